#include "HeifFile.h"

#include <algorithm>
#include <utility>

#include <libheif/heif.h>

struct HeifFile::Callbacks {
    static HeifFile &self(void *opaque) { return *static_cast<HeifFile *>(opaque); }

    static int64_t tell(void *opaque) { return self(opaque).m_position; }

    static int read(void *target, size_t size, void *opaque) {
        return self(opaque).read(static_cast<char *>(target), qint64(size)) ? 0 : -1;
    }

    static int seek(int64_t position, void *opaque) {
        self(opaque).m_position = position;
        return 0;
    }

    static heif_reader_grow_status wait(int64_t size, void *opaque) {
        return size <= self(opaque).m_file.size() ? heif_reader_grow_status_size_reached
                                                  : heif_reader_grow_status_size_beyond_eof;
    }
};

HeifFile::HeifFile(const RegularFile &file, ImageDecoder::Cancelled cancelled)
    : m_file(file), m_cancelled(std::move(cancelled)), m_context(heif_context_alloc()) {
    static constexpr heif_reader reader{.reader_api_version = 1,
                                        .get_position = Callbacks::tell,
                                        .read = Callbacks::read,
                                        .seek = Callbacks::seek,
                                        .wait_for_file_size = Callbacks::wait};
    heif_image_handle *primary = nullptr;
    if (m_context != nullptr &&
        heif_context_read_from_reader(m_context.get(), &reader, this, nullptr).code == heif_error_Ok &&
        heif_context_get_primary_image_handle(m_context.get(), &primary).code == heif_error_Ok) {
        m_primary.reset(primary);
    }
}

bool HeifFile::read(char *target, qint64 size) {
    if (m_cancelled && m_cancelled()) {
        return false;
    }
    if (size > qint64(m_window.size())) {
        const bool whole = m_file.read(m_position, target, size) == size;
        m_position += whole ? size : 0;
        return whole;
    }
    if (m_position < m_begin || m_position + size > m_begin + m_length) {
        m_begin = m_position;
        m_length = std::max<qint64>(0, m_file.read(m_position, m_window.data(), qint64(m_window.size())));
    }
    if (m_position + size > m_begin + m_length) {
        return false;
    }
    std::copy_n(m_window.data() + (m_position - m_begin), size, target);
    m_position += size;
    return true;
}
