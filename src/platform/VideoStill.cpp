#include "VideoStill.h"

#include "Codecs.h"

QImage VideoStill::frame(const FileURL &url, int maxPixelSize) {
    return ImageSource::toSRGB(Codecs::loaded().videoFrame(url, maxPixelSize));
}
