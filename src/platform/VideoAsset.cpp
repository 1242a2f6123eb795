#include "VideoAsset.h"

#include "Codecs.h"

std::optional<QSizeF> VideoAsset::displaySize(const FileURL &url) {
    return Codecs::loaded().videoDisplaySize(url);
}
