#include "ThumbnailCacheTrimmer.h"

#include "DirectoryStream.h"

#include <algorithm>
#include <ctime>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Entry {
    QByteArray name;
    qint64 size;
    timespec modified;
};

bool isOlder(const timespec &a, const timespec &b) {
    return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
}

/// Regular files only, in the order of the listing.
std::vector<Entry> list(DIR *directory) {
    std::vector<Entry> entries;
    while (const dirent *listed = ::readdir(directory)) {
        struct stat status {};
        if (::fstatat(::dirfd(directory), listed->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(status.st_mode)) {
            entries.push_back({listed->d_name, status.st_size, status.st_mtim});
        }
    }
    return entries;
}

} // namespace

namespace ThumbnailCacheTrimmer {

void pruneCache(FileDescriptor directory, qint64 maximumBytes) {
    const DirectoryStream listing = directoryStream(std::move(directory));
    if (listing == nullptr) {
        return;
    }
    const int folder = ::dirfd(listing.get());
    std::vector<Entry> entries = list(listing.get());
    const auto hidden = std::stable_partition(entries.begin(), entries.end(),
                                              [](const Entry &entry) { return !entry.name.startsWith('.'); });
    constexpr time_t anHour = 3600;
    const time_t abandoned = ::time(nullptr) - anHour;
    std::for_each(hidden, entries.end(), [&](const Entry &entry) {
        if (entry.name.startsWith(temporaryPrefix) && entry.modified.tv_sec < abandoned) {
            ::unlinkat(folder, entry.name.constData(), 0);
        }
    });
    entries.erase(hidden, entries.end());

    qint64 total = 0;
    for (const Entry &entry : entries) {
        total += entry.size;
    }
    if (total <= maximumBytes) {
        return;
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry &a, const Entry &b) { return isOlder(a.modified, b.modified); });
    for (const Entry &entry : entries) {
        if (total <= maximumBytes) {
            break;
        }
        if (::unlinkat(folder, entry.name.constData(), 0) == 0) {
            total -= entry.size;
        }
    }
}

} // namespace ThumbnailCacheTrimmer
