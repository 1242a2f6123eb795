#include "HeifMaker.h"

#include "MediaMaker.h"

#include <QDebug>

#include <cstring>
#include <memory>

#include <libheif/heif.h>

namespace {

template <auto Free>
struct Freer {
    template <typename T>
    void operator()(T *handle) const {
        Free(handle);
    }
};

using Context = std::unique_ptr<heif_context, Freer<heif_context_free>>;
using Image = std::unique_ptr<heif_image, Freer<heif_image_release>>;
using Encoder = std::unique_ptr<heif_encoder, Freer<heif_encoder_release>>;
using Handle = std::unique_ptr<heif_image_handle, Freer<heif_image_handle_release>>;
using Options = std::unique_ptr<heif_encoding_options, Freer<heif_encoding_options_free>>;

bool succeeded(const heif_error &error) {
    if (error.code != heif_error_Ok) {
        qWarning() << "libheif:" << error.message;
    }
    return error.code == heif_error_Ok;
}

Image imageOf(const QImage &source) {
    const QImage rgb = source.convertToFormat(QImage::Format_RGB888);
    heif_image *made = nullptr;
    if (!succeeded(heif_image_create(rgb.width(), rgb.height(), heif_colorspace_RGB,
                                     heif_chroma_interleaved_RGB, &made))) {
        return nullptr;
    }
    Image image(made);
    if (!succeeded(heif_image_add_plane(made, heif_channel_interleaved, rgb.width(), rgb.height(), 8))) {
        return nullptr;
    }
    int stride = 0;
    uint8_t *plane = heif_image_get_plane(made, heif_channel_interleaved, &stride);
    for (int y = 0; y < rgb.height(); ++y) {
        std::memcpy(plane + ptrdiff_t(y) * stride, rgb.constScanLine(y), size_t(rgb.width()) * 3);
    }
    return image;
}

} // namespace

bool HeifMaker::write(const QString &path, const QImage &stored, int orientation, bool avif,
                      const QByteArray &preset) {
    const Context context(heif_context_alloc());
    heif_encoder *found = nullptr;
    if (!succeeded(heif_context_get_encoder_for_format(
            context.get(), avif ? heif_compression_AV1 : heif_compression_HEVC, &found))) {
        return false;
    }
    const Encoder encoder(found);
    heif_encoder_set_lossy_quality(found, 70);
    if (avif) {
        heif_encoder_set_parameter(found, "speed", "9");
    } else {
        heif_encoder_set_parameter(found, "preset", preset.constData());
    }
    const Options options(heif_encoding_options_alloc());
    options->image_orientation = heif_orientation(orientation);
    const Image image = imageOf(stored);
    heif_image_handle *encoded = nullptr;
    if (image == nullptr ||
        !succeeded(heif_context_encode_image(context.get(), image.get(), found, options.get(), &encoded))) {
        return false;
    }
    const Handle handle(encoded);
    const QByteArray exif = MediaMaker::exifOrientation(orientation, false);
    return succeeded(
               heif_context_add_exif_metadata(context.get(), encoded, exif.constData(), int(exif.size()))) &&
           succeeded(heif_context_write_to_file(context.get(), path.toUtf8().constData()));
}
