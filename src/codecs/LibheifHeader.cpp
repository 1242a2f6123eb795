#include "LibheifHeader.h"

#include "HeifPointers.h"

#include <algorithm>
#include <array>

#include <libheif/heif.h>

namespace {

/// What libheif reads through. It asks for a few bytes here and there, of the boxes alone and never of the
/// pixels; a window over the file keeps that from costing a system call each.
struct Source {
    const RegularFile &file;
    qint64 position = 0;
    std::array<char, 4096> window;
    qint64 begin = 0;
    qint64 length = 0;

    explicit Source(const RegularFile &opened) : file(opened) {}

    static int64_t tell(void *self) { return static_cast<Source *>(self)->position; }

    static int read(void *target, size_t size, void *self) {
        return static_cast<Source *>(self)->copy(static_cast<char *>(target), qint64(size)) ? 0 : -1;
    }

    bool copy(char *target, qint64 size) {
        if (size > qint64(window.size())) {
            const bool whole = file.read(position, target, size) == size;
            position += whole ? size : 0;
            return whole;
        }
        if (position < begin || position + size > begin + length) {
            begin = position;
            length = std::max<qint64>(0, file.read(position, window.data(), qint64(window.size())));
        }
        if (position + size > begin + length) {
            return false;
        }
        std::copy_n(window.data() + (position - begin), size, target);
        position += size;
        return true;
    }

    static int seek(int64_t position, void *self) {
        static_cast<Source *>(self)->position = position;
        return 0;
    }

    static heif_reader_grow_status wait(int64_t size, void *self) {
        return size <= static_cast<Source *>(self)->file.size() ? heif_reader_grow_status_size_reached
                                                                : heif_reader_grow_status_size_beyond_eof;
    }
};

} // namespace

std::optional<QSize> LibheifHeader::pixelSize(const RegularFile &file) {
    static constexpr heif_reader reader{.reader_api_version = 1,
                                        .get_position = Source::tell,
                                        .read = Source::read,
                                        .seek = Source::seek,
                                        .wait_for_file_size = Source::wait};
    const Heif<heif_context> context(heif_context_alloc());
    Source source(file);
    if (context == nullptr ||
        heif_context_read_from_reader(context.get(), &reader, &source, nullptr).code != heif_error_Ok) {
        return std::nullopt;
    }
    heif_image_handle *found = nullptr;
    if (heif_context_get_primary_image_handle(context.get(), &found).code != heif_error_Ok) {
        return std::nullopt;
    }
    const Heif<heif_image_handle> handle(found);
    const QSize size(heif_image_handle_get_width(found), heif_image_handle_get_height(found));
    return size.isEmpty() ? std::nullopt : std::optional(size);
}
