#include "LibavAsset.h"

#include "FFmpegPointers.h"
#include "SampleAspect.h"
#include "VideoContainer.h"

#include <QSize>

#include <algorithm>
#include <cmath>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace {

using DisplaySize = std::optional<QSizeF>;

/// For one way of reading a file; whole seconds happen only with slow disks and hostile files.
constexpr std::chrono::milliseconds timeLimit{4000};
/// How far packets are searched for a picture size before the dear analysis of the streams.
constexpr qint64 maximumBytes = 4 << 20;

bool codecTellsAspect(AVCodecID codec) {
    return codec == AV_CODEC_ID_H264 || codec == AV_CODEC_ID_MPEG1VIDEO || codec == AV_CODEC_ID_MPEG2VIDEO;
}

std::optional<double> codedAspect(AVCodecID codec, std::span<const quint8> bytes) {
    return codec == AV_CODEC_ID_H264 ? SampleAspect::ofH264(bytes) : SampleAspect::ofMpegVideo(bytes);
}

std::optional<double> containerAspect(AVFormatContext *context, AVStream &stream) {
    const AVRational told = av_guess_sample_aspect_ratio(context, &stream, nullptr);
    return told.num > 0 && told.den > 0 ? std::optional(double(told.num) / told.den) : std::nullopt;
}

std::span<const quint8> extradata(const AVCodecParameters &coded) {
    return {coded.extradata, size_t(std::max(coded.extradata_size, 0))};
}

/// Pixel width divided by height: what the container says, else what the codec says, else square.
double aspectOf(AVFormatContext *context, AVStream &stream, std::span<const quint8> packet) {
    if (const auto told = containerAspect(context, stream)) {
        return *told;
    }
    const AVCodecParameters &coded = *stream.codecpar;
    if (!codecTellsAspect(coded.codec_id)) {
        return 1;
    }
    const auto inHeader = codedAspect(coded.codec_id, extradata(coded));
    return inHeader ? *inHeader : codedAspect(coded.codec_id, packet).value_or(1);
}

QSizeF turned(const QSizeF &size, const int32_t *matrix) {
    if (matrix == nullptr) {
        return size;
    }
    // Only the turn: the demuxer has already made any scale in the matrix part of the pixels' shape.
    const double scaleX = std::hypot(double(matrix[0]), double(matrix[3]));
    const double scaleY = std::hypot(double(matrix[1]), double(matrix[4]));
    if (scaleX == 0 || scaleY == 0) {
        return size;
    }
    return {
        (std::abs(double(matrix[0])) * size.width() + std::abs(double(matrix[3])) * size.height()) / scaleX,
        (std::abs(double(matrix[1])) * size.width() + std::abs(double(matrix[4])) * size.height()) / scaleY};
}

DisplaySize displayed(const VideoContainer &container, AVStream &stream, QSize stored,
                      std::span<const quint8> packet) {
    if (stored.isEmpty()) {
        return std::nullopt;
    }
    const double aspect = aspectOf(container.context(), stream, packet);
    return turned({stored.width() * aspect, double(stored.height())}, VideoContainer::displayMatrix(&stream));
}

/// What the container's header alone tells, in most formats all.
DisplaySize sizeFromHeader(const VideoContainer &container) {
    AVStream *stream = container.videoStream();
    if (stream == nullptr) {
        return std::nullopt;
    }
    return displayed(container, *stream, {stream->codecpar->width, stream->codecpar->height}, {});
}

/// Whether the pixels' shape may stand at the head of the coded video and nowhere before.
bool aspectMayFollow(const VideoContainer &container) {
    AVStream *stream = container.videoStream();
    return stream != nullptr && codecTellsAspect(stream->codecpar->codec_id) &&
           stream->codecpar->extradata_size == 0 && !containerAspect(container.context(), *stream);
}

/// Reads packets until the stream's parser has met the head of a picture: broadcast and Flash containers do
/// not tell the size themselves.
DisplaySize sizeFromPackets(const VideoContainer &container) {
    const FFmpeg::Packet packet(av_packet_alloc());
    qint64 bytes = 0;
    while (packet != nullptr && bytes < maximumBytes && !container.timedOut() &&
           av_read_frame(container.context(), packet.get()) >= 0) {
        bytes += packet->size;
        AVStream *stream = container.videoStream();
        if (stream != nullptr && stream->index == packet->stream_index) {
            const AVCodecParserContext *parser = av_stream_get_parser(stream);
            const QSize stored = parser != nullptr && parser->width > 0
                                     ? QSize(parser->width, parser->height)
                                     : QSize(stream->codecpar->width, stream->codecpar->height);
            const std::span<const quint8> coded(packet->data, size_t(std::max(packet->size, 0)));
            if (const DisplaySize size = displayed(container, *stream, stored, coded)) {
                return size;
            }
        }
        av_packet_unref(packet.get());
    }
    return std::nullopt;
}

} // namespace

std::optional<QSizeF> LibavAsset::displaySize(const FileURL &url) {
    auto container = VideoContainer::open(url, timeLimit);
    if (container == nullptr) {
        return std::nullopt;
    }
    const DisplaySize fromHeader = sizeFromHeader(*container);
    if (fromHeader && !aspectMayFollow(*container)) {
        return fromHeader;
    }
    const bool streamsMayFollow = (container->context()->ctx_flags & AVFMTCTX_NOHEADER) != 0;
    if (container->videoStream() == nullptr && !streamsMayFollow) {
        return std::nullopt;
    }
    if (const DisplaySize size = sizeFromPackets(*container)) {
        return size;
    }
    if (fromHeader) {
        return fromHeader;
    }
    // The dear way out wants to see the file from its start.
    container = VideoContainer::open(url, timeLimit);
    if (container == nullptr || avformat_find_stream_info(container->context(), nullptr) < 0) {
        return std::nullopt;
    }
    return sizeFromHeader(*container);
}
