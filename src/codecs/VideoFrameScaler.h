#pragma once

#include <QImage>

struct AVFrame;

/// Turns decoded video frames into pictures.
namespace VideoFrameScaler {

/// The frame as it is stored (not turned) with square pixels, inside a square of maxPixelSize, never enlarged
/// beyond its height and the width that its pixels' shape gives. RGB32 in the frame's colour space. Null when
/// the pixel format is beyond conversion.
///
/// pixelShape is the width of a pixel divided by its height; 0 when it is not known.
QImage scaled(const AVFrame &frame, double pixelShape, int maxPixelSize);

} // namespace VideoFrameScaler
