#include "Codecs.h"
#include "LibavAsset.h"
#include "LibavStill.h"
#include "LibheifImage.h"

/// The module's only way in, for Codecs::loaded().
extern "C" Q_DECL_EXPORT const Codecs *mosaCodecs() {
    static constexpr Codecs codecs{.videoDisplaySize = LibavAsset::displaySize,
                                   .videoFrame = LibavStill::frame,
                                   .heifPixelSize = LibheifImage::pixelSize,
                                   .heifImage = LibheifImage::read};
    return &codecs;
}
