#include "HeifHeader.h"

#include <memory>

#include <libheif/heif.h>

namespace {

struct ContextFreer {
    void operator()(heif_context *context) const { heif_context_free(context); }
};
struct HandleReleaser {
    void operator()(heif_image_handle *handle) const { heif_image_handle_release(handle); }
};

/// What libheif reads through: it asks for boxes here and there, and never for the pixels.
struct Source {
    const RegularFile &file;
    qint64 position = 0;

    static int64_t tell(void *self) { return static_cast<Source *>(self)->position; }

    static int read(void *target, size_t length, void *self) {
        auto *source = static_cast<Source *>(self);
        const qint64 got = source->file.read(source->position, target, qint64(length));
        if (got != qint64(length)) {
            return -1;
        }
        source->position += got;
        return 0;
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

std::optional<QSize> HeifHeader::pixelSize(const RegularFile &file) {
    static constexpr heif_reader reader{.reader_api_version = 1,
                                        .get_position = Source::tell,
                                        .read = Source::read,
                                        .seek = Source::seek,
                                        .wait_for_file_size = Source::wait};
    const std::unique_ptr<heif_context, ContextFreer> context(heif_context_alloc());
    Source source{.file = file};
    if (context == nullptr ||
        heif_context_read_from_reader(context.get(), &reader, &source, nullptr).code != heif_error_Ok) {
        return std::nullopt;
    }
    heif_image_handle *found = nullptr;
    if (heif_context_get_primary_image_handle(context.get(), &found).code != heif_error_Ok) {
        return std::nullopt;
    }
    const std::unique_ptr<heif_image_handle, HandleReleaser> handle(found);
    const QSize size(heif_image_handle_get_width(found), heif_image_handle_get_height(found));
    return size.isEmpty() ? std::nullopt : std::optional(size);
}
