#include "ThumbnailReferences.h"

#include "MediaMaker.h"

#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

#include <libheif/heif.h>
#include <turbojpeg.h>
#include <vips/vips.h>

namespace {

QSize fitted(QSize size, int maxPixelSize) {
    return size.width() <= maxPixelSize && size.height() <= maxPixelSize
               ? size
               : size.scaled(maxPixelSize, maxPixelSize, Qt::KeepAspectRatio);
}

QImage reduced(const QImage &image, QSize size) {
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

template <auto Free>
struct Freer {
    template <typename T>
    void operator()(T *handle) const {
        Free(handle);
    }
};

struct TurboFreer {
    void operator()(void *handle) const { tjDestroy(handle); }
};

QImage turbo(const QByteArray &bytes, int eighthsFor) {
    const std::unique_ptr<void, TurboFreer> decoder(tjInitDecompress());
    const auto *data = reinterpret_cast<const unsigned char *>(bytes.constData());
    int width = 0;
    int height = 0;
    int sampling = 0;
    int colours = 0;
    if (tjDecompressHeader3(decoder.get(), data, ulong(bytes.size()), &width, &height, &sampling, &colours) !=
        0) {
        return {};
    }
    QSize size(width, height);
    if (eighthsFor > 0) {
        const QSize target = fitted(size, eighthsFor);
        for (int eighths = 8; eighths >= 1; --eighths) {
            const QSize scaled((width * eighths + 7) / 8, (height * eighths + 7) / 8);
            if (scaled.width() >= target.width() && scaled.height() >= target.height()) {
                size = scaled;
            }
        }
    }
    QImage image(size, QImage::Format_RGB32);
    const bool decoded = tjDecompress2(decoder.get(), data, ulong(bytes.size()), image.bits(), size.width(),
                                       int(image.bytesPerLine()), size.height(), TJPF_BGRX, 0) == 0;
    return decoded ? image : QImage();
}

} // namespace

namespace ThumbnailReferences {

QImage turboThumbnail(const FileURL &url, int maxPixelSize) {
    const QImage image = turbo(MediaMaker::read(url), maxPixelSize);
    return reduced(image, fitted(image.size(), maxPixelSize));
}

QImage turboDecode(const FileURL &url) {
    return turbo(MediaMaker::read(url), 0);
}

QImage vipsThumbnail(const FileURL &url, int maxPixelSize) {
    VipsImage *made = nullptr;
    if (vips_thumbnail(url.nativePath().constData(), &made, maxPixelSize, "height", maxPixelSize, "size",
                       VIPS_SIZE_DOWN, nullptr) != 0) {
        return {};
    }
    const std::unique_ptr<VipsImage, Freer<g_object_unref>> image(made);
    size_t length = 0;
    const std::unique_ptr<void, Freer<g_free>> pixels(vips_image_write_to_memory(made, &length));
    if (pixels == nullptr) {
        return {};
    }
    const int bands = vips_image_get_bands(made);
    const QImage::Format format = bands == 4 ? QImage::Format_RGBA8888 : QImage::Format_RGB888;
    return QImage(static_cast<const uchar *>(pixels.get()), made->Xsize, made->Ysize, made->Xsize * bands,
                  format)
        .convertToFormat(QImage::Format_RGB32);
}

QImage qtThumbnail(const FileURL &url, int maxPixelSize) {
    QImageReader::setAllocationLimit(0);
    QImageReader reader(url.path());
    reader.setAutoTransform(true);
    reader.setScaledSize(fitted(reader.size(), maxPixelSize));
    return reader.read().convertToFormat(QImage::Format_RGB32);
}

QImage heifThumbnail(const FileURL &url, int maxPixelSize) {
    const std::unique_ptr<heif_context, Freer<heif_context_free>> context(heif_context_alloc());
    heif_image_handle *primary = nullptr;
    heif_context_read_from_file(context.get(), url.nativePath().constData(), nullptr);
    heif_context_get_primary_image_handle(context.get(), &primary);
    const std::unique_ptr<heif_image_handle, Freer<heif_image_handle_release>> handle(primary);
    const std::unique_ptr<heif_decoding_options, Freer<heif_decoding_options_free>> options(
        heif_decoding_options_alloc());
    options->decoder_id = "libde265";
    heif_image *decoded = nullptr;
    heif_decode_image(primary, &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGB, options.get());
    const std::unique_ptr<heif_image, Freer<heif_image_release>> image(decoded);
    if (decoded == nullptr) {
        return {};
    }
    int stride = 0;
    const uint8_t *plane = heif_image_get_plane_readonly(decoded, heif_channel_interleaved, &stride);
    const QImage rgb(plane, heif_image_get_width(decoded, heif_channel_interleaved),
                     heif_image_get_height(decoded, heif_channel_interleaved), stride, QImage::Format_RGB888);
    return reduced(rgb, fitted(rgb.size(), maxPixelSize));
}

QImage thumbnailerStill(const FileURL &url, int maxPixelSize) {
    const QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("still.png"));
    const int code = QProcess::execute(QStringLiteral("ffmpegthumbnailer"),
                                       {QStringLiteral("-i"), url.path(), QStringLiteral("-o"), target,
                                        QStringLiteral("-s"), QString::number(maxPixelSize),
                                        QStringLiteral("-t"), QStringLiteral("20%")});
    return code == 0 ? QImage(target).convertToFormat(QImage::Format_RGB32) : QImage();
}

} // namespace ThumbnailReferences
