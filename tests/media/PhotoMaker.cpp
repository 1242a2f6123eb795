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
    // The turn back, clockwise, and whether the image is mirrored then.
    constexpr std::pair<int, bool> turns[] = {{0, false}, {0, true},    {180, false}, {180, true},
                                              {90, true}, {270, false}, {270, true},  {90, false}};
    const auto [degrees, mirrored] = turns[orientation - 1];
    return upright.transformed(QTransform().rotate(degrees)).mirrored(mirrored, false);
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
