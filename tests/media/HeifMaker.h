#pragma once

#include <QImage>
#include <QString>

/// HEIC and AVIF with the turns that their containers can demand.
namespace HeifMaker {

/// The image holds the pixels as stored; the orientation (1 to 8 as in EXIF) tells how to turn them upright.
bool write(const QString &path, const QImage &stored, int orientation, bool avif, const QByteArray &preset);

} // namespace HeifMaker
