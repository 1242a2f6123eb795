#include "Codecs.h"

#include <QLibrary>

namespace {

constexpr Codecs none{.videoDisplaySize = [](const FileURL &) { return std::optional<QSizeF>(); },
                      .videoFrame = [](const FileURL &, int) { return QImage(); },
                      .heifPixelSize = [](const RegularFile &) { return std::optional<QSize>(); },
                      .heifImage = [](const RegularFile &, const ImageSource::TargetSize &,
                                      const ImageDecoder::Cancelled &) { return QImage(); }};

const Codecs &load() {
    // Found by the program's own search path, in the build tree as where it is installed.
    QLibrary library(QStringLiteral("mosa-codecs.so"));
    const auto entry = reinterpret_cast<const Codecs *(*)()>(library.resolve("mosaCodecs"));
    if (entry == nullptr) {
        qWarning("Videos and HEIC photos cannot be read: %s", qPrintable(library.errorString()));
        return none;
    }
    return *entry();
}

} // namespace

const Codecs &Codecs::loaded() {
    static const Codecs &codecs = load();
    return codecs;
}
