#include "ScanReferences.h"

#include <QImageReader>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/display.h>
}
#include <libheif/heif.h>

namespace ScanReferences {

namespace {

void walkInto(int descriptor, Totals &totals) {
    DIR *folder = fdopendir(descriptor);
    while (const dirent *entry = folder == nullptr ? nullptr : readdir(folder)) {
        const char *name = &entry->d_name[0];
        if (name[0] == '.') {
            continue;
        }
        struct statx status {};
        if (statx(dirfd(folder), name, AT_SYMLINK_NOFOLLOW,
                  STATX_TYPE | STATX_SIZE | STATX_MTIME | STATX_BTIME, &status) != 0) {
            continue;
        }
        if (S_ISDIR(status.stx_mode)) {
            walkInto(openat(dirfd(folder), name, O_RDONLY | O_DIRECTORY | O_CLOEXEC), totals);
        } else if (S_ISREG(status.stx_mode)) {
            ++totals.files;
            totals.bytes += qint64(status.stx_size);
        }
    }
    if (folder != nullptr) {
        closedir(folder);
    }
}

QSize sizeInContainer(const FileURL &file, bool analyse) {
    AVFormatContext *context = nullptr;
    QSize size;
    if (avformat_open_input(&context, file.nativePath().constData(), nullptr, nullptr) != 0) {
        return size;
    }
    if (!analyse || avformat_find_stream_info(context, nullptr) >= 0) {
        const int index = av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
        if (index >= 0) {
            const AVStream *stream = context->streams[index];
            size = {stream->codecpar->width, stream->codecpar->height};
            const uint8_t *matrix = av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
            const double turn =
                matrix == nullptr ? 0 : av_display_rotation_get(reinterpret_cast<const int32_t *>(matrix));
            if (std::lround(std::abs(turn)) % 180 == 90) {
                size.transpose();
            }
        }
    }
    avformat_close_input(&context);
    return size;
}

QSize sizeInHeif(const FileURL &file) {
    QSize size;
    heif_context *context = heif_context_alloc();
    heif_image_handle *handle = nullptr;
    if (heif_context_read_from_file(context, file.nativePath().constData(), nullptr).code == heif_error_Ok &&
        heif_context_get_primary_image_handle(context, &handle).code == heif_error_Ok) {
        size = {heif_image_handle_get_width(handle), heif_image_handle_get_height(handle)};
        heif_image_handle_release(handle);
    }
    heif_context_free(context);
    return size;
}

} // namespace

Totals walk(const FileURL &folder) {
    Totals totals;
    walkInto(open(folder.nativePath().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), totals);
    return totals;
}

Totals walkWithStandardLibrary(const FileURL &folder) {
    Totals totals;
    for (const auto &entry :
         std::filesystem::recursive_directory_iterator(folder.nativePath().toStdString())) {
        if (entry.is_regular_file()) {
            ++totals.files;
            totals.bytes += qint64(entry.file_size());
        }
    }
    return totals;
}

Totals walkWithFind(const FileURL &folder) {
    Totals totals;
    const QByteArray command = "find '" + folder.nativePath() + "' -type f -printf '%s %T@\\n'";
    FILE *output = popen(command.constData(), "re");
    char line[128];
    while (output != nullptr && fgets(line, sizeof line, output) != nullptr) {
        ++totals.files;
        totals.bytes += std::atoll(line);
    }
    if (output != nullptr) {
        pclose(output);
    }
    return totals;
}

QSize photoSize(const FileURL &file) {
    const QString path = file.path();
    const bool heif = path.endsWith(u".heic") || path.endsWith(u".heif") || path.endsWith(u".avif");
    return heif ? sizeInHeif(file) : QImageReader(path).size();
}

QSize videoSize(const FileURL &file) {
    return sizeInContainer(file, false);
}

QSize analysedVideoSize(const FileURL &file) {
    return sizeInContainer(file, true);
}

} // namespace ScanReferences
