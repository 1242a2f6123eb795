// Thumbnails of photos and videos, made anew and from the disk cache.

#include "Comparison.h"
#include "ImageDecoder.h"
#include "MediaMaker.h"
#include "ThumbnailDiskCache.h"
#include "ThumbnailReferences.h"
#include "VideoStill.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <functional>
#include <vector>

#include <vips/vips.h>

namespace {

constexpr int thumbnailSize = 720;
constexpr int rounds = 9;

using Maker = std::function<QImage(const FileURL &)>;

/// Size and content: a thumbnail of another size, or of something else, is another result.
Comparison::Work each(const std::vector<FileURL> &files, const Maker &make) {
    return [files, make] {
        QByteArray digest;
        for (const FileURL &file : files) {
            const QImage image = make(file);
            digest += QByteArray::number(image.width()) + 'x' + QByteArray::number(image.height()) +
                      (MediaMaker::showsPattern(image) ? " whole " : " wrong ");
        }
        return digest;
    };
}

Maker sized(QImage (*make)(const FileURL &, int)) {
    return [make](const FileURL &file) { return make(file, thumbnailSize); };
}

QImage mosaThumbnail(const FileURL &file, int size) {
    return ImageDecoder::thumbnail(file, size);
}

class Input {
public:
    std::vector<FileURL> photos(const QByteArray &extension, const std::vector<QSize> &sizes,
                                const QByteArray &hevcPreset = "ultrafast") const {
        std::vector<FileURL> files;
        for (const QSize &size : sizes) {
            const FileURL file = url(QByteArray::number(size.width()) + '.' + extension);
            if (!MediaMaker::photo(file, {.size = size, .hevcPreset = hevcPreset})) {
                std::exit(1);
            }
            files.push_back(file);
        }
        return files;
    }
    std::vector<FileURL> videos() const {
        std::vector<FileURL> files;
        for (const char *extension : {"mp4", "mkv", "mov"}) {
            const FileURL file = url(QByteArray("video.") + extension);
            if (!MediaMaker::video(file, {.size = {1920, 1080}, .seconds = 10, .audio = true})) {
                std::exit(1);
            }
            files.push_back(file);
        }
        return files;
    }
    FileURL url(const QByteArray &name) const {
        return FileURL::fromNativePath(m_folder.path().toUtf8() + '/' + name);
    }

private:
    QTemporaryDir m_folder;
};

bool jpeg(const Input &input) {
    const auto files = input.photos("jpg", {{4000, 3000}, {6000, 4000}});
    Comparison comparison("JPEG thumbnail, 12 and 24 MP");
    comparison.subject(each(files, sized(mosaThumbnail)));
    comparison.peer("libjpeg-turbo, area", 1.15, each(files, sized(ThumbnailReferences::turboThumbnail)));
    comparison.peer("vips_thumbnail", 1 / 1.3, each(files, sized(ThumbnailReferences::vipsThumbnail)));
    return comparison.run(rounds);
}

bool general(const Input &input, const QByteArray &extension) {
    const auto files = input.photos(extension, {{4000, 3000}});
    Comparison comparison(extension.toStdString() + " thumbnail, 12 MP");
    comparison.subject(each(files, sized(mosaThumbnail)));
    comparison.peer("vips_thumbnail", 1.2, each(files, sized(ThumbnailReferences::vipsThumbnail)));
    comparison.peer("QImageReader", 1.2, each(files, sized(ThumbnailReferences::qtThumbnail)));
    return comparison.run(rounds);
}

bool heic(const Input &input) {
    // With all the filters that cameras' encoders use.
    const auto files = input.photos("heic", {{4000, 3000}}, "medium");
    Comparison comparison("HEIC thumbnail, 12 MP");
    comparison.subject(each(files, sized(mosaThumbnail)));
    comparison.peer("libheif's own decoder", 0.6, each(files, sized(ThumbnailReferences::heifThumbnail)));
    return comparison.run(rounds);
}

bool video(const Input &input) {
    const auto files = input.videos();
    Comparison comparison("video still, 1080p");
    comparison.subject(each(files, sized(VideoStill::frame)));
    comparison.peer("libav, one key frame", 1.15, each(files, sized(ThumbnailReferences::libavStill)));
    comparison.peer("ffmpegthumbnailer", 0.2, each(files, sized(ThumbnailReferences::thumbnailerStill)));
    return comparison.run(rounds);
}

bool fromDisk(const Input &input) {
    const ThumbnailDiskCache cache(input.url("cache"));
    cache.prepare();
    std::vector<FileURL> media;
    for (const FileURL &photo : input.photos("jpg", {{4000, 3000}, {6000, 4000}})) {
        const QImage thumbnail = ImageDecoder::thumbnail(photo, thumbnailSize);
        for (int i = 0; i < 20; ++i) {
            media.push_back(FileURL::fromNativePath(photo.nativePath() + QByteArray::number(i)));
            cache.write(media.back(), thumbnail);
        }
    }
    Comparison comparison("thumbnail from disk, 40");
    comparison.subject(each(media, [&](const FileURL &file) { return cache.read(file); }));
    comparison.peer("libjpeg-turbo", 1.5, each(media, [&](const FileURL &file) {
                        return ThumbnailReferences::turboDecode(
                            input.url("cache/" + ThumbnailDiskCache::cacheName(file)));
                    }));
    return comparison.run(rounds);
}

} // namespace

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (VIPS_INIT(argv[0]) != 0) {
        return 1;
    }
    // Every contender does its work on one thread, but for what the libraries start on their own.
    vips_concurrency_set(1);
    vips_cache_set_max(0);
    const Input input;
    const QByteArray only = argc > 1 ? argv[1] : "";
    const auto wanted = [&](const char *name) { return only.isEmpty() || only == name; };
    Comparison::printHeader();
    bool agreed = !wanted("jpg") || jpeg(input);
    for (const char *extension : {"png", "tiff", "webp", "bmp", "gif"}) {
        agreed &= !wanted(extension) || general(input, extension);
    }
    agreed &= !wanted("heic") || heic(input);
    agreed &= !wanted("video") || video(input);
    agreed &= !wanted("disk") || fromDisk(input);
    vips_shutdown();
    return agreed ? 0 : 1;
}
