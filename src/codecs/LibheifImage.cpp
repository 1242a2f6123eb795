#include "LibheifImage.h"

#include "AreaReducer.h"
#include "CodedColour.h"
#include "HeifFile.h"
#include "HevcDecoderPlugin.h"

#include <QColorSpace>

#include <libheif/heif.h>

namespace {

bool ok(const heif_error &error) {
    return error.code == heif_error_Ok;
}

QColorSpace colorSpace(const heif_image_handle *handle) {
    switch (heif_image_handle_get_color_profile_type(handle)) {
    case heif_color_profile_type_rICC:
    case heif_color_profile_type_prof: {
        const size_t size = heif_image_handle_get_raw_color_profile_size(handle);
        constexpr size_t largestProfile = 16 << 20;
        if (size == 0 || size > largestProfile) {
            return {};
        }
        QByteArray bytes(qsizetype(size), Qt::Uninitialized);
        const bool read = ok(heif_image_handle_get_raw_color_profile(handle, bytes.data()));
        return read ? QColorSpace::fromIccProfile(bytes) : QColorSpace();
    }
    case heif_color_profile_type_nclx: {
        heif_color_profile_nclx *raw = nullptr;
        const bool read = ok(heif_image_handle_get_nclx_color_profile(handle, &raw));
        const Heif<heif_color_profile_nclx> profile(raw);
        return read && profile != nullptr
                   ? CodedColour::colorSpace(profile->color_primaries, profile->transfer_characteristics)
                   : QColorSpace();
    }
    default:
        return {};
    }
}

QImage::Format format(const heif_image_handle *handle) {
    if (heif_image_handle_has_alpha_channel(handle) == 0) {
        return QImage::Format_RGB888;
    }
    return heif_image_handle_is_premultiplied_alpha(handle) != 0 ? QImage::Format_RGBA8888_Premultiplied
                                                                 : QImage::Format_RGBA8888;
}

/// With libheif's first choice of decoder, or the one that is named.
Heif<heif_image> decode(const heif_image_handle *handle, heif_chroma chroma, const char *decoder) {
    const Heif<heif_decoding_options> options(heif_decoding_options_alloc());
    if (options == nullptr) {
        return nullptr;
    }
    options->convert_hdr_to_8bit = 1;
    options->decoder_id = decoder;
    heif_image *image = nullptr;
    const bool decoded = ok(heif_decode_image(handle, &image, heif_colorspace_RGB, chroma, options.get()));
    Heif<heif_image> result(image);
    return decoded ? std::move(result) : nullptr;
}

} // namespace

std::optional<QSize> LibheifImage::pixelSize(const RegularFile &file) {
    const HeifFile heif(file);
    const heif_image_handle *primary = heif.primaryImage();
    if (primary == nullptr) {
        return std::nullopt;
    }
    const QSize size(heif_image_handle_get_width(primary), heif_image_handle_get_height(primary));
    return size.isEmpty() ? std::nullopt : std::optional(size);
}

QImage LibheifImage::read(const RegularFile &file, const ImageSource::TargetSize &targetSize,
                          const ImageDecoder::Cancelled &cancelled) {
    HevcDecoderPlugin::registerOnce();
    const HeifFile heif(file, cancelled);
    const heif_image_handle *primary = heif.primaryImage();
    if (primary == nullptr) {
        return {};
    }
    // The planes as coded, a second set while they are turned, and the interleaved pixels.
    constexpr qint64 bytesPerPixel = 7;
    const qint64 pixels =
        qint64(heif_image_handle_get_width(primary)) * heif_image_handle_get_height(primary);
    if (pixels <= 0 || pixels > ImageDecoder::memoryLimit / bytesPerPixel) {
        return {};
    }
    const QImage::Format pixelFormat = format(primary);
    const heif_chroma chroma =
        pixelFormat == QImage::Format_RGB888 ? heif_chroma_interleaved_RGB : heif_chroma_interleaved_RGBA;
    Heif<heif_image> decoded = decode(primary, chroma, nullptr);
    if (decoded == nullptr) {
        decoded = decode(primary, chroma, HevcDecoderPlugin::fallbackId);
    }
    if (decoded == nullptr) {
        return {};
    }
    const QSize size(heif_image_get_width(decoded.get(), heif_channel_interleaved),
                     heif_image_get_height(decoded.get(), heif_channel_interleaved));
    int stride = 0;
    const uint8_t *plane = heif_image_get_plane_readonly(decoded.get(), heif_channel_interleaved, &stride);
    if (plane == nullptr || size.isEmpty()) {
        return {};
    }
    QImage image(plane, size.width(), size.height(), stride, pixelFormat);
    image.setColorSpace(colorSpace(primary));
    return AreaReducer::reduce(image, targetSize(size));
}
