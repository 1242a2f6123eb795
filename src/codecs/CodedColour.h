#pragma once

#include <QColorSpace>

/// Colour spaces by the code points of ITU-T H.273, as HEIC, AVIF and video streams carry them.
namespace CodedColour {

/// Invalid for the many combinations that are shown as sRGB. High dynamic range (PQ, HLG) comes with a
/// transfer function that compresses it into the range of an ordinary screen.
QColorSpace colorSpace(int primaries, int transferCharacteristics);

} // namespace CodedColour
