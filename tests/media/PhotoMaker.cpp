#include "HeifMaker.h"
#include "MediaCache.h"
#include "MediaMaker.h"

#include <QDebug>
#include <QImageWriter>
#include <QTransform>

namespace MediaMaker {

namespace {

/// The pixels as stored, so that the orientation turns them back upright.
QImage stored(const QImage &upright, int orientation) {
    const auto turned = [&](qreal degrees, bool mirrored = false) {
        const QImage result = upright.transformed(QTransform().rotate(degrees));
        return mirrored ? result.mirrored(true, false) : result;
    };
    switch (orientation) {
    case 2:
        return turned(0, true);
    case 3:
        return turned(180);
    case 4:
        return turned(180, true);
    case 5:
        return turned(90, true);
    case 6:
        return turned(270);
    case 7:
        return turned(270, true);
    case 8:
        return turned(90);
    default:
        return upright;
    }
}

bool encode(const QString &path, const QByteArray &extension, const PhotoOptions &options) {
    const QImage image = stored(pattern(options.size), options.orientation);
    if (extension == "heic" || extension == "heif" || extension == "avif") {
        return HeifMaker::write(path, image, options.orientation, extension == "avif", options.hevcPreset);
    }
    if (extension == "gif") {
        const QString source = path + QStringLiteral(".png");
        return image.save(source) &&
               MediaCache::run(QStringLiteral("ffmpeg"),
                               {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y"),
                                QStringLiteral("-i"), source, path});
    }
    QImageWriter writer(path);
    writer.setQuality(92);
    if (!writer.write(image)) {
        qWarning() << path << writer.errorString();
        return false;
    }
    return true;
}

} // namespace

bool photo(const FileURL &target, const PhotoOptions &options) {
    const QByteArray extension = target.pathExtension().toLower().toLatin1();
    if (!photoExtensions().contains(extension)) {
        qWarning() << "no photo extension:" << target.path();
        return false;
    }
    const QString name = QStringLiteral("photo-%1x%2-%3.%4")
                             .arg(options.size.width())
                             .arg(options.size.height())
                             .arg(options.orientation)
                             .arg(QLatin1String(extension));
    QByteArray content =
        MediaCache::fetch(name, [&](const QString &path) { return encode(path, extension, options); });
    if (options.orientation != 1 && extension.startsWith("jp")) {
        content.insert(2, exifOrientation(options.orientation, true));
    }
    return !content.isEmpty() && write(target, MediaCache::padded(content, extension, options.minimumBytes));
}

} // namespace MediaMaker
