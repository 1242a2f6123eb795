#include "MediaCache.h"
#include "MediaMaker.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QHash>
#include <QTransform>

namespace MediaMaker {

namespace {

/// What ffmpeg calls the container and the codec that is usual in it.
struct Format {
    const char *muxer;
    const char *codec;
    QStringList extra = {};
};

Format formatOf(const QByteArray &extension) {
    static const QHash<QByteArray, Format> formats{
        {"3gp", {"3gp", "libx264"}},
        {"asf", {"asf", "wmv2"}},
        {"avi", {"avi", "mpeg4", {QStringLiteral("-vtag"), QStringLiteral("XVID")}}},
        {"divx", {"avi", "mpeg4", {QStringLiteral("-vtag"), QStringLiteral("DX50")}}},
        {"flv", {"flv", "libx264"}},
        {"m2ts", {"mpegts", "libx264", {QStringLiteral("-mpegts_m2ts_mode"), QStringLiteral("1")}}},
        {"m4v", {"mp4", "libx264"}},
        {"mkv", {"matroska", "libx264"}},
        {"mov", {"mov", "libx264"}},
        {"mp4", {"mp4", "libx264"}},
        {"mpeg", {"mpeg", "mpeg1video"}},
        {"mpg", {"mpeg", "mpeg2video"}},
        {"mts", {"mpegts", "libx264", {QStringLiteral("-mpegts_m2ts_mode"), QStringLiteral("1")}}},
        {"ogv", {"ogg", "libtheora"}},
        // RealMedia takes no packet over 64 kB.
        {"rm", {"rm", "rv10", {QStringLiteral("-qmin"), QStringLiteral("12")}}},
        {"rmvb", {"rm", "rv20", {QStringLiteral("-qmin"), QStringLiteral("12")}}},
        {"ts", {"mpegts", "libx264"}},
        {"webm", {"webm", "libvpx"}},
        {"wmv", {"asf", "wmv2"}},
    };
    return formats.value(extension);
}

QStringList codecArguments(const QByteArray &codec) {
    QStringList arguments{QStringLiteral("-c:v"), QLatin1String(codec)};
    if (codec == "libx264" || codec == "libx265") {
        arguments << QStringLiteral("-preset") << QStringLiteral("ultrafast");
    } else if (codec.startsWith("libvpx")) {
        arguments << QStringLiteral("-deadline") << QStringLiteral("realtime") << QStringLiteral("-cpu-used")
                  << QStringLiteral("8");
    }
    return arguments << QStringLiteral("-b:v") << QStringLiteral("600k") << QStringLiteral("-g")
                     << QStringLiteral("25") << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p");
}

QStringList audioArguments(const Format &format) {
    const QByteArray muxer = format.muxer;
    QStringList arguments{QStringLiteral("-ar"), QStringLiteral("44100"), QStringLiteral("-c:a")};
    if (muxer == "webm" || muxer == "ogg") {
        return arguments << QStringLiteral("libvorbis");
    }
    if (muxer == "rm") {
        return arguments << QStringLiteral("ac3");
    }
    return arguments << (muxer == "mpeg" || muxer == "avi" ? QStringLiteral("mp2") : QStringLiteral("aac"));
}

/// FFmpeg writes the display matrix of a "rotate" tag only while it copies a stream.
bool rotated(const QString &source, const QString &path, const Format &format, const VideoOptions &options) {
    QStringList arguments{
        QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y"),   QStringLiteral("-i"), source,
        QStringLiteral("-c"), QStringLiteral("copy"),  QStringLiteral("-map"), QStringLiteral("0")};
    if (options.rotation != 0) {
        // The tag counts counterclockwise here.
        arguments << QStringLiteral("-metadata:s:v:0")
                  << QStringLiteral("rotate=%1").arg((360 - options.rotation) % 360);
    }
    if (!options.indexAtEnd) {
        arguments << QStringLiteral("-movflags") << QStringLiteral("faststart");
    }
    return MediaCache::run(QStringLiteral("ffmpeg"),
                           arguments << QStringLiteral("-f") << QLatin1String(format.muxer) << path);
}

bool encode(const QString &path, const Format &format, const VideoOptions &options) {
    QStringList arguments{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")};
    const QString seconds = QString::number(options.seconds);
    if (options.video) {
        const QString frame = path + QStringLiteral(".png");
        if (!pattern(options.size).transformed(QTransform().rotate(-options.rotation)).save(frame)) {
            return false;
        }
        arguments << QStringLiteral("-loop") << QStringLiteral("1") << QStringLiteral("-framerate")
                  << QStringLiteral("25") << QStringLiteral("-t") << seconds << QStringLiteral("-i") << frame;
    }
    if (options.audio || !options.video) {
        arguments << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-t") << seconds
                  << QStringLiteral("-i") << QStringLiteral("anoisesrc=amplitude=0.1:seed=1");
    }
    if (options.video) {
        // Moving noise keeps the encoders from saving everything after the first frame.
        arguments << QStringLiteral("-vf")
                  << QStringLiteral("noise=alls=12:allf=t:all_seed=1,setsar=%1")
                         .arg(QLatin1String(options.sampleAspect).toString().replace(u':', u'/'));
        arguments << codecArguments(options.codec.isEmpty() ? QByteArray(format.codec) : options.codec);
    }
    if (options.audio || !options.video) {
        arguments << audioArguments(format);
    }
    arguments << format.extra << QStringLiteral("-f") << QLatin1String(format.muxer);
    const bool remux = options.rotation != 0 || !options.indexAtEnd;
    const QString encoded = remux ? path + QStringLiteral(".encoded") : path;
    return MediaCache::run(QStringLiteral("ffmpeg"), arguments << encoded) &&
           (!remux || rotated(encoded, path, format, options));
}

} // namespace

bool video(const FileURL &target, const VideoOptions &options) {
    const QByteArray extension = target.pathExtension().toLower().toLatin1();
    if (!videoExtensions().contains(extension)) {
        qWarning() << "no video extension:" << target.path();
        return false;
    }
    const QString name = QStringLiteral("video-%1x%2-%3s-r%4-p%5-%6%7%8-%9.")
                             .arg(options.size.width())
                             .arg(options.size.height())
                             .arg(options.seconds)
                             .arg(options.rotation)
                             .arg(QLatin1String(options.sampleAspect).toString().replace(u':', u'_'))
                             .arg(int(options.video))
                             .arg(int(options.audio))
                             .arg(int(options.indexAtEnd))
                             .arg(QLatin1String(options.codec)) +
                         QLatin1String(extension);
    const QByteArray content = MediaCache::fetch(
        name, [&](const QString &path) { return encode(path, formatOf(extension), options); });
    return !content.isEmpty() && write(target, MediaCache::padded(content, extension, options.minimumBytes));
}

} // namespace MediaMaker
