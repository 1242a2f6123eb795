#pragma once

#include "HeifPointers.h"
#include "ImageDecoder.h"
#include "RegularFile.h"

#include <array>

/// An opened HEIC, HEIF or AVIF file. One thread at a time.
///
/// libheif reads through this: of the boxes a few bytes here and there, for which a window over the file
/// spares a system call each, and the coded pixels at once, when they are decoded.
class HeifFile {
public:
    /// Reads the boxes. The file must outlive this; reading fails from the moment that `cancelled` says so.
    explicit HeifFile(const RegularFile &file, ImageDecoder::Cancelled cancelled = {});
    HeifFile(const HeifFile &) = delete;
    HeifFile &operator=(const HeifFile &) = delete;

    /// Null when the file is none of the formats.
    const heif_image_handle *primaryImage() const { return m_primary.get(); }

private:
    struct Callbacks;

    bool read(char *target, qint64 size);

    const RegularFile &m_file;
    ImageDecoder::Cancelled m_cancelled;
    qint64 m_position = 0;
    std::array<char, 4096> m_window;
    qint64 m_begin = 0;
    qint64 m_length = 0;
    // Destroyed first: they read from the above.
    Heif<heif_context> m_context;
    Heif<heif_image_handle> m_primary;
};
