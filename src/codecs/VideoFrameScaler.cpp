#include "VideoFrameScaler.h"

#include "CodedColour.h"

#include <algorithm>
#include <cmath>
#include <memory>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace {

struct ScalerDeleter {
    void operator()(SwsContext *context) const { sws_freeContext(context); }
};

QSize displaySize(const AVFrame &frame, double pixelShape, int maxPixelSize) {
    // Beyond this a pixel's shape is a mistake.
    constexpr double mostOblong = 20;
    const bool plausible = pixelShape >= 1 / mostOblong && pixelShape <= mostOblong;
    const double width = frame.width * (plausible ? pixelShape : 1.0);
    const double factor = std::min(1.0, maxPixelSize / std::max(width, double(frame.height)));
    return {std::clamp(int(std::lround(width * factor)), 1, maxPixelSize),
            std::clamp(int(std::lround(frame.height * factor)), 1, maxPixelSize)};
}

/// The matrix between YCbCr and RGB; streams that name none follow the custom for their size.
int matrixOf(const AVFrame &frame) {
    switch (frame.colorspace) {
    case AVCOL_SPC_BT709:
        return SWS_CS_ITU709;
    case AVCOL_SPC_FCC:
        return SWS_CS_FCC;
    case AVCOL_SPC_SMPTE240M:
        return SWS_CS_SMPTE240M;
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return SWS_CS_BT2020;
    case AVCOL_SPC_UNSPECIFIED:
        return frame.width >= 1280 || frame.height > 576 ? SWS_CS_ITU709 : SWS_CS_ITU601;
    default:
        return SWS_CS_ITU601;
    }
}

bool hasFullRange(const AVFrame &frame) {
    switch (frame.format) {
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ444P:
    case AV_PIX_FMT_YUVJ440P:
    case AV_PIX_FMT_YUVJ411P:
        return true;
    default:
        return frame.color_range == AVCOL_RANGE_JPEG;
    }
}

} // namespace

namespace VideoFrameScaler {

QImage scaled(const AVFrame &frame, double pixelShape, int maxPixelSize) {
    if (frame.width < 1 || frame.height < 1 || maxPixelSize < 1) {
        return {};
    }
    const auto format = AVPixelFormat(frame.format);
    const AVPixelFormat target =
        QSysInfo::ByteOrder == QSysInfo::LittleEndian ? AV_PIX_FMT_BGR0 : AV_PIX_FMT_0RGB;
    const QSize size = displaySize(frame, pixelShape, maxPixelSize);
    const std::unique_ptr<SwsContext, ScalerDeleter> scaler(
        sws_getContext(frame.width, frame.height, format, size.width(), size.height(), target, SWS_AREA,
                       nullptr, nullptr, nullptr));
    if (scaler == nullptr) {
        return {};
    }
    constexpr int one = 1 << 16;
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(matrixOf(frame)), hasFullRange(frame) ? 1 : 0,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, one, one);
    // The scaler writes whole groups of pixels: also beyond the end of a row, and of the last one.
    constexpr int group = 16;
    QImage image(size.width() / group * group + 2 * group, size.height(), QImage::Format_RGB32);
    uint8_t *planes[] = {image.bits(), nullptr, nullptr, nullptr};
    const int strides[] = {int(image.bytesPerLine()), 0, 0, 0};
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, strides) <= 0) {
        return {};
    }
    image = image.copy(QRect(QPoint(0, 0), size));
    image.setColorSpace(CodedColour::colorSpace(frame.color_primaries, frame.color_trc));
    return image;
}

} // namespace VideoFrameScaler
