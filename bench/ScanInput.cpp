#include "ScanInput.h"

#include "MediaMaker.h"

#include <QHash>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr int photoCount = 8000;
constexpr int commonVideoCount = 1700;
constexpr int broadcastVideoCount = 300;

struct Share {
    const char *extension;
    /// Out of the sum of all.
    int weight;
};

const QList<Share> photoShares{{"jpg", 56}, {"jpeg", 6}, {"png", 10}, {"heic", 12}, {"webp", 5}, {"gif", 3},
                               {"tif", 1},  {"tiff", 1}, {"avif", 3}, {"heif", 1},  {"bmp", 2}};
const QList<Share> commonShares{{"mp4", 50}, {"mov", 17}, {"mkv", 10}, {"m4v", 5}, {"webm", 5},
                                {"avi", 4},  {"wmv", 2},  {"asf", 1},  {"ogv", 1}, {"3gp", 2},
                                {"divx", 1}, {"rm", 1},   {"rmvb", 1}};
const QList<Share> broadcastShares{{"ts", 1}, {"m2ts", 1}, {"mts", 3}, {"mpg", 2}, {"mpeg", 1}, {"flv", 2}};

void check(bool done, const char *what) {
    if (!done) {
        std::fprintf(stderr, "cannot make %s\n", what);
        std::exit(2);
    }
}

const char *pick(const QList<Share> &shares, int number) {
    int sum = 0;
    for (const Share &share : shares) {
        sum += share.weight;
    }
    // A stride that visits every place spreads the kinds evenly.
    int place = int(qint64(number) * 37 % sum);
    for (const Share &share : shares) {
        place -= share.weight;
        if (place < 0) {
            return share.extension;
        }
    }
    return shares.first().extension;
}

/// A few originals of each kind, as bytes.
QByteArray original(const FileURL &storage, const QByteArray &extension, bool video, int variant) {
    static QHash<QByteArray, QByteArray> made;
    const QByteArray key = extension + QByteArray::number(variant);
    QByteArray &content = made[key];
    if (content.isEmpty()) {
        const FileURL url = storage.appending("original." + extension);
        const QSize size = variant % 2 == 0 ? QSize(480, 320) : QSize(240, 360);
        check(video ? MediaMaker::video(url,
                                        {.size = size, .seconds = 2.0 + 2 * variant, .audio = variant == 1})
                    : MediaMaker::photo(url, {.size = size}),
              key.constData());
        content = MediaMaker::read(url);
        if (extension.startsWith("jp")) {
            // As cameras write it: an orientation, and a preview that comes before the size.
            const QByteArray preview = QByteArray("\xFF\xE2\x2E\xE2", 4) + MediaMaker::noise(0x2EE0);
            content.insert(2, MediaMaker::exifOrientation(1, true) + preview);
        }
    }
    return content;
}

QByteArray folderOf(int number) {
    // Years with both kinds, events below them, as cameras and people leave them.
    return "20" + QByteArray::number(10 + number % 12) + "/Event " + QByteArray::number(number % 97);
}

QList<FileURL> fill(const FileURL &storage, const FileURL &root, const QList<Share> &shares, int count,
                    bool video, int firstNumber) {
    QList<FileURL> files;
    for (int i = 0; i < count; ++i) {
        const int number = firstNumber + i;
        const QByteArray extension = pick(shares, i);
        const FileURL folder = root.appending(folderOf(number));
        const FileURL url =
            folder.appending((video ? "MOV_" : "IMG_") + QByteArray::number(number) + "." + extension);
        files << url;
        if (!std::filesystem::exists(url.nativePath().toStdString())) {
            std::filesystem::create_directories(folder.nativePath().toStdString());
            check(MediaMaker::write(url, original(storage, extension, video, i % 2)), "a file");
        }
    }
    return files;
}

} // namespace

ScanInput::Library ScanInput::library(const FileURL &storage) {
    std::filesystem::create_directories(storage.nativePath().toStdString());
    Library made{
        .root = storage.appending("library"), .photos = {}, .commonVideos = {}, .broadcastVideos = {}};
    made.photos = fill(storage, made.root, photoShares, photoCount, false, 0);
    made.commonVideos = fill(storage, made.root, commonShares, commonVideoCount, true, 20'000);
    made.broadcastVideos = fill(storage, made.root, broadcastShares, broadcastVideoCount, true, 30'000);
    return made;
}

FileURL ScanInput::largeTree(const FileURL &storage) {
    constexpr int folders = 500;
    constexpr int filesEach = 200;
    const FileURL root = storage.appending("large tree");
    for (int i = 0; i < folders; ++i) {
        const FileURL folder =
            root.appending("Year " + QByteArray::number(i % 10) + "/Folder " + QByteArray::number(i));
        if (!std::filesystem::create_directories(folder.nativePath().toStdString())) {
            continue;
        }
        for (int j = 0; j < filesEach; ++j) {
            check(MediaMaker::write(folder.appending("IMG_" + QByteArray::number(j) + ".jpg"), "x"),
                  "a file");
        }
    }
    return root;
}
