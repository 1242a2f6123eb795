#pragma once

#include "RegularFile.h"

#include <QByteArray>

/// The EXIF metadata of picture formats that are made of chunks, which Qt's readers pass over.
namespace ExifChunk {

/// The TIFF structure that they are; empty when the file has none or is not of the format ("png", "webp").
QByteArray tiff(const RegularFile &file, const QByteArray &format);

} // namespace ExifChunk
