#pragma once

#include "FileURL.h"

#include <QSizeF>

#include <optional>

/// VideoAsset by libavformat.
namespace LibavAsset {

std::optional<QSizeF> displaySize(const FileURL &url);

} // namespace LibavAsset
