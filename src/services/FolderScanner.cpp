#include "FolderScanner.h"

#include "BackgroundTask.h"
#include "DirectoryWalk.h"
#include "FileSystemError.h"
#include "ImageHeader.h"
#include "NewestFirst.h"
#include "VideoAsset.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace FolderScanner {

namespace {

constexpr qint64 minimumMediaSize = 50'000;
constexpr double photoFallbackRatio = 0.75;
constexpr double videoFallbackRatio = 16.0 / 9.0;
constexpr double minimumRatio = 0.35;
constexpr double maximumRatio = 3.5;

/// Thrown through a scan whose future has been cancelled.
struct Cancelled {};

struct Media {
    QList<MediaFile> videos;
    QList<MediaFile> photos;

    void append(MediaFile file) { (file.kind == MediaKind::video ? videos : photos).append(std::move(file)); }
};

/// One run over one folder, on one thread.
class Scan {
public:
    explicit Scan(const QPromise<ScanResult> &promise) : m_promise(promise) {}

    ScanResult run(const FileURL &folder) const;

private:
    void checkCancellation() const {
        if (m_promise.isCanceled()) {
            throw Cancelled();
        }
    }
    Media inspectSubtree(const FileURL &folder) const;
    std::vector<DirectoryEntry> candidateFiles(const FileURL &folder) const;
    void addSubfolder(const FileURL &folder, ScanResult &result) const;

    const QPromise<ScanResult> &m_promise;
};

bool isIgnored(const FileURL &folder) {
    return ignoredNames().contains(folder.lastPathComponent().toLower());
}

double clamped(double ratio) {
    return std::clamp(ratio, minimumRatio, maximumRatio);
}

double videoAspectRatio(const FileURL &url) {
    const auto size = VideoAsset::displaySize(url);
    if (!size || !(std::abs(size->width()) > 0) || !(std::abs(size->height()) > 0)) {
        return videoFallbackRatio;
    }
    return clamped(std::abs(size->width() / size->height()));
}

double photoAspectRatio(const FileURL &url) {
    const auto size = ImageHeader::pixelSize(url);
    return size ? clamped(double(size->width()) / size->height()) : photoFallbackRatio;
}

std::optional<MediaKind> kindOf(const FileURL &url) {
    const QByteArray extension = url.pathExtension().toLower().toUtf8();
    if (videoExtensions().contains(extension)) {
        return MediaKind::video;
    }
    return photoExtensions().contains(extension) ? std::optional(MediaKind::photo) : std::nullopt;
}

std::optional<MediaFile> makeMediaFile(const DirectoryEntry &entry) {
    const auto kind = kindOf(entry.url);
    if (!kind || entry.size < minimumMediaSize) {
        return std::nullopt;
    }
    const auto addedAt = entry.created ? entry.created : entry.modified;
    return MediaFile{.url = entry.url,
                     .kind = *kind,
                     .addedAt = addedAt.value_or(Timestamp::min()),
                     .aspectRatio = *kind == MediaKind::video ? videoAspectRatio(entry.url)
                                                              : photoAspectRatio(entry.url)};
}

std::vector<DirectoryEntry> Scan::candidateFiles(const FileURL &folder) const {
    std::vector<DirectoryEntry> candidates;
    std::optional<DirectoryWalk> walk;
    try {
        walk.emplace(folder, DirectoryWalk::Depth::subtree);
    } catch (const FileSystemError &) {
        // A subfolder that cannot be read does not keep the rest from being shown.
        return candidates;
    }
    while (auto entry = walk->next()) {
        checkCancellation();
        if (entry->type == DirectoryEntry::Type::directory) {
            if (isIgnored(entry->url)) {
                walk->skipDescendants();
            }
        } else if (entry->type == DirectoryEntry::Type::regularFile) {
            candidates.push_back(std::move(*entry));
        }
    }
    return candidates;
}

Media Scan::inspectSubtree(const FileURL &folder) const {
    Media media;
    for (const DirectoryEntry &candidate : candidateFiles(folder)) {
        checkCancellation();
        if (auto file = makeMediaFile(candidate)) {
            media.append(std::move(*file));
        }
    }
    return media;
}

void Scan::addSubfolder(const FileURL &folder, ScanResult &result) const {
    if (isIgnored(folder)) {
        return;
    }
    const Media media = inspectSubtree(folder);
    if (media.videos.isEmpty() || media.photos.isEmpty()) {
        result.videos += media.videos;
        result.photos += media.photos;
        return;
    }
    QList<MediaFile> all = media.videos + media.photos;
    sortNewestFirst(all);
    result.folders.append(FolderCard{.url = FileURL::directory(folder.nativePath()),
                                     .name = folder.lastPathComponent(),
                                     .itemCount = all.size(),
                                     .representative = all.first()});
}

ScanResult Scan::run(const FileURL &folder) const {
    checkCancellation();
    ScanResult result{.folder = folder, .videos = {}, .photos = {}, .folders = {}};
    DirectoryWalk walk(folder, DirectoryWalk::Depth::entries);
    for (;;) {
        checkCancellation();
        const auto entry = walk.next();
        if (!entry) {
            break;
        }
        if (entry->type == DirectoryEntry::Type::directory) {
            addSubfolder(entry->url, result);
        } else if (entry->type == DirectoryEntry::Type::regularFile) {
            if (auto file = makeMediaFile(*entry)) {
                (file->kind == MediaKind::video ? result.videos : result.photos).append(std::move(*file));
            }
        }
    }
    sortNewestFirst(result.videos);
    sortNewestFirst(result.photos);
    sortByName(result.folders);
    return result;
}

} // namespace

const QSet<QByteArray> &videoExtensions() {
    static const QSet<QByteArray> set{"3gp", "asf",  "avi", "divx", "flv", "m2ts", "m4v",
                                      "mkv", "mov",  "mp4", "mpeg", "mpg", "mts",  "ogv",
                                      "rm",  "rmvb", "ts",  "webm", "wmv"};
    return set;
}

const QSet<QByteArray> &photoExtensions() {
    static const QSet<QByteArray> set{"avif", "bmp", "gif", "heic", "heif", "jpeg",
                                      "jpg",  "png", "tif", "tiff", "webp"};
    return set;
}

const QSet<QString> &ignoredNames() {
    static const QSet<QString> set{QStringLiteral("archive"), QStringLiteral("thumbnail"),
                                   QStringLiteral("thumbnails")};
    return set;
}

QFuture<ScanResult> scan(const FileURL &folder) {
    return BackgroundTask::run<ScanResult>([folder](QPromise<ScanResult> &promise) {
        try {
            promise.addResult(Scan(promise).run(folder));
        } catch (const Cancelled &) {
            // The future is cancelled already, and stays without a result.
            return;
        }
    });
}

} // namespace FolderScanner
