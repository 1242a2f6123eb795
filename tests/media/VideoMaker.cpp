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
    const char *extra = "";
};

Format formatOf(const QByteArray &extension) {
    static const QHash<QByteArray, Format> formats{
        {"3gp", {"3gp", "libx264"}},
        {"asf", {"asf", "wmv2"}},
        {"avi", {"avi", "mpeg4", "-vtag XVID"}},
        {"divx", {"avi", "mpeg4", "-vtag DX50"}},
        {"flv", {"flv", "libx264"}},
        {"m2ts", {"mpegts", "libx264", "-mpegts_m2ts_mode 1"}},
        {"m4v", {"mp4", "libx264"}},
        {"mkv", {"matroska", "libx264"}},
        {"mov", {"mov", "libx264"}},
        {"mp4", {"mp4", "libx264"}},
        {"mpeg", {"mpeg", "mpeg1video"}},
        {"mpg", {"mpeg", "mpeg2video"}},
        {"mts", {"mpegts", "libx264", "-mpegts_m2ts_mode 1"}},
        {"ogv", {"ogg", "libtheora"}},
        // RealMedia takes no packet over 64 kB.
        {"rm", {"rm", "rv10", "-qmin 12"}},
        {"rmvb", {"rm", "rv20", "-qmin 12"}},
        {"ts", {"mpegts", "libx264"}},
        {"webm", {"webm", "libvpx"}},
        {"wmv", {"asf", "wmv2"}},
    };
    return formats.value(extension);
}

QStringList words(const QByteArray &text) {
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

bool ffmpeg(const QStringList &arguments, const QByteArray &muxer, const QString &path) {
    return MediaCache::run(QStringLiteral("ffmpeg"),
                           words("-v error -y") + arguments + words("-f " + muxer) + QStringList{path});
}

QStringList videoArguments(const QByteArray &codec, const VideoOptions &options) {
    // Moving noise keeps the encoders from saving everything after the first frame.
    const QByteArray look =
        "-vf noise=alls=12:allf=t:all_seed=1,setsar=" + QByteArray(options.sampleAspect).replace(':', '/');
    const QByteArray speed = codec == "libx264" || codec == "libx265" ? " -preset ultrafast"
                             : codec.startsWith("libvpx")             ? " -deadline realtime -cpu-used 8"
                                                                      : "";
    return words(look + " -c:v " + codec + speed + " -b:v 600k -g 25 -pix_fmt yuv420p");
}

QStringList audioArguments(const QByteArray &muxer) {
    return words("-ar 44100 -c:a ") + words(muxer == "webm" || muxer == "ogg"   ? "libvorbis"
                                            : muxer == "rm"                     ? "ac3"
                                            : muxer == "mpeg" || muxer == "avi" ? "mp2"
                                                                                : "aac");
}

bool encode(const QString &path, const Format &format, const VideoOptions &options) {
    QStringList arguments;
    const QByteArray seconds = QByteArray::number(options.seconds);
    if (options.video) {
        const QString frame = path + QStringLiteral(".png");
        if (!pattern(options.size).transformed(QTransform().rotate(-options.rotation)).save(frame)) {
            return false;
        }
        arguments += words("-loop 1 -framerate 25 -t " + seconds + " -i") + QStringList{frame};
    }
    const bool audio = options.audio || !options.video;
    if (audio) {
        arguments += words("-f lavfi -t " + seconds + " -i anoisesrc=amplitude=0.1:seed=1");
    }
    if (options.video) {
        arguments +=
            videoArguments(options.codec.isEmpty() ? QByteArray(format.codec) : options.codec, options);
    }
    if (audio) {
        arguments += audioArguments(format.muxer);
    }
    arguments += words(format.extra);
    if (options.rotation == 0 && options.indexAtEnd) {
        return ffmpeg(arguments, format.muxer, path);
    }
    // FFmpeg writes the display matrix of a "rotate" tag only while it copies a stream; the tag counts
    // counterclockwise.
    const QString encoded = path + QStringLiteral(".encoded");
    QStringList copying = QStringList{QStringLiteral("-i"), encoded} + words("-c copy -map 0");
    if (options.rotation != 0) {
        copying += words("-metadata:s:v:0 rotate=" + QByteArray::number((360 - options.rotation) % 360));
    }
    if (!options.indexAtEnd) {
        copying += words("-movflags faststart");
    }
    return ffmpeg(arguments, format.muxer, encoded) && ffmpeg(copying, format.muxer, path);
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
