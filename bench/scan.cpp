// The parts of a folder scan, and the whole, beside plain uses of the libraries that do the same work.

#include "Comparison.h"
#include "DirectoryWalk.h"
#include "FolderScanner.h"
#include "ImageHeader.h"
#include "ScanInput.h"
#include "ScanReferences.h"
#include "VideoAsset.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>

#include <cmath>

extern "C" {
#include <libavutil/log.h>
}

namespace {

QByteArray digest(const ScanReferences::Totals &totals) {
    return QByteArray::number(totals.files) + " files, " + QByteArray::number(totals.bytes) + " bytes";
}

template <typename Measure>
QByteArray digestOfSizes(const QList<FileURL> &files, const Measure &measure) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    int known = 0;
    for (const FileURL &file : files) {
        const QSize size = measure(file);
        known += size.isEmpty() ? 0 : 1;
        hash.addData(QByteArray::number(size.width()) + 'x' + QByteArray::number(size.height()) + ' ');
    }
    return QByteArray::number(known) + " sizes, " + hash.result().toHex().left(8);
}

ScanReferences::Totals walked(const FileURL &root) {
    ScanReferences::Totals totals;
    DirectoryWalk walk(root, DirectoryWalk::Depth::subtree);
    while (const auto entry = walk.next()) {
        if (entry->type == DirectoryEntry::Type::regularFile) {
            ++totals.files;
            totals.bytes += entry->size;
        }
    }
    return totals;
}

QSize photo(const FileURL &file) {
    return ImageHeader::pixelSize(file).value_or(QSize());
}

QSize video(const FileURL &file) {
    return VideoAsset::displaySize(file).value_or(QSizeF()).toSize();
}

QByteArray scanned(const FileURL &root) {
    QFuture<ScanResult> future = FolderScanner::scan(root);
    const ScanResult result = future.result();
    qint64 count = result.videos.size() + result.photos.size();
    for (const FolderCard &card : result.folders) {
        count += card.itemCount;
    }
    return QByteArray::number(count);
}

bool compareWalks(const FileURL &tree, int rounds) {
    Comparison walk("directory walk, 100,000 files");
    walk.subject([&] { return digest(walked(tree)); });
    walk.peer("readdir + statx", 1.3, [&] { return digest(ScanReferences::walk(tree)); });
    walk.peer("find -printf", 1.0, [&] { return digest(ScanReferences::walkWithFind(tree)); });
    walk.peer("std::filesystem", 1.0, [&] { return digest(ScanReferences::walkWithStandardLibrary(tree)); });
    return walk.run(rounds);
}

bool comparePhotos(const ScanInput::Library &library, int rounds) {
    bool same = true;
    for (const bool heif : {false, true}) {
        QList<FileURL> files;
        for (const FileURL &file : library.photos) {
            const QString extension = file.pathExtension();
            if (heif == (extension.startsWith(u"hei") || extension == u"avif")) {
                files << file;
            }
        }
        Comparison photos("photo sizes, " + std::to_string(files.size()) +
                          (heif ? " HEIC, AVIF" : " of 8 formats"));
        photos.subject([&] { return digestOfSizes(files, photo); });
        photos.peer(heif ? "libheif" : "QImageReader::size", 1.0,
                    [&] { return digestOfSizes(files, ScanReferences::photoSize); });
        same = photos.run(rounds) && same;
    }
    return same;
}

bool compareVideos(const ScanInput::Library &library, int rounds) {
    const QList<FileURL> all = library.commonVideos + library.broadcastVideos;
    Comparison common("video ratios, " + std::to_string(library.commonVideos.size()) +
                      " in common containers");
    common.subject([&] { return digestOfSizes(library.commonVideos, video); });
    common.peer("avformat_open_input", 1.1,
                [&] { return digestOfSizes(library.commonVideos, ScanReferences::videoSize); });
    Comparison mixed("video ratios, " + std::to_string(all.size()) + " with ts, mts, mpg, flv");
    mixed.subject([&] { return digestOfSizes(all, video); });
    // It does not learn the broadcast formats' sizes.
    mixed.uncheckedPeer("avformat_open_input", 1.6,
                        [&] { return digestOfSizes(all, ScanReferences::videoSize); });
    Comparison analysed("video ratios, " + std::to_string(all.size()) + " mixed");
    analysed.subject([&] { return digestOfSizes(all, video); });
    analysed.peer("avformat_find_stream_info", 0.1,
                  [&] { return digestOfSizes(all, ScanReferences::analysedVideoSize); });
    const bool same = common.run(rounds);
    return mixed.run(rounds) && analysed.run(std::max(1, rounds / 5)) && same;
}

bool compareScans(const ScanInput::Library &library, int rounds) {
    const QList<FileURL> videos = library.commonVideos + library.broadcastVideos;
    Comparison scan("whole scan, 10,000 files, warm");
    scan.subject([&] { return scanned(library.root); });
    scan.peer("sum of the plain loops", 1.3, [&] {
        const qint64 files = ScanReferences::walk(library.root).files;
        digestOfSizes(library.photos, ScanReferences::photoSize);
        digestOfSizes(videos, ScanReferences::videoSize);
        return QByteArray::number(files);
    });
    return scan.run(rounds);
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const FileURL storage = FileURL::directory(
        QDir(arguments.value(1, QStringLiteral("bench-input"))).absolutePath().toLocal8Bit());
    const int rounds = std::max(1, arguments.value(2, QStringLiteral("15")).toInt());
    const ScanInput::Library library = ScanInput::library(storage);
    const FileURL tree = ScanInput::largeTree(storage);
    av_log_set_level(AV_LOG_QUIET);
    Comparison::printHeader();
    bool same = compareWalks(tree, rounds);
    same = comparePhotos(library, rounds) && same;
    same = compareVideos(library, rounds) && same;
    same = compareScans(library, rounds) && same;
    return same ? 0 : 1;
}
