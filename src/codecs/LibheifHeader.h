#pragma once

#include "RegularFile.h"

#include <QSize>

#include <optional>

/// The head of a HEIC, HEIF or AVIF file.
namespace LibheifHeader {

/// Of the primary image, after the container's crop and rotation.
std::optional<QSize> pixelSize(const RegularFile &file);

} // namespace LibheifHeader
