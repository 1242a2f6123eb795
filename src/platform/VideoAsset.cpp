#include "VideoAsset.h"

#include "SampleAspect.h"
#include "VideoContainer.h"

#include <cmath>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace {

using Size = std::optional<QSizeF>;

/// For one way of reading a file; whole seconds happen only with slow disks and hostile files.
constexpr std::chrono::milliseconds timeLimit{4000};
/// How far packets are searched for a picture size before the dear analysis of the streams.
constexpr qint64 maximumBytes = 4 << 20;

struct PacketFreer {
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
};
using Packet = std::unique_ptr<AVPacket, PacketFreer>;

std::optional<double> codedAspect(const AVStream &stream, std::span<const quint8> bytes) {
    switch (stream.codecpar->codec_id) {
    case AV_CODEC_ID_H264:
        return SampleAspect::ofH264(bytes);
    case AV_CODEC_ID_MPEG1VIDEO:
    case AV_CODEC_ID_MPEG2VIDEO:
        return SampleAspect::ofMpegVideo(bytes);
    default:
        return std::nullopt;
    }
}

/// Pixel width divided by height: what the container says, else what the coded bytes say, else square.
double aspectOf(AVFormatContext *context, AVStream &stream, std::span<const quint8> coded) {
    const AVRational told = av_guess_sample_aspect_ratio(context, &stream, nullptr);
    if (told.num > 0 && told.den > 0) {
        return double(told.num) / told.den;
    }
    return codedAspect(stream, coded).value_or(1);
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

Size displayed(const VideoContainer &container, AVStream &stream, int width, int height,
               std::span<const quint8> coded) {
    if (width <= 0 || height <= 0) {
        return std::nullopt;
    }
    const double aspect = aspectOf(container.context(), stream, coded);
    return turned({width * aspect, double(height)}, VideoContainer::displayMatrix(&stream));
}

/// What the container's header alone tells, in most formats all.
Size sizeFromHeader(const VideoContainer &container) {
    AVStream *stream = container.videoStream();
    if (stream == nullptr) {
        return std::nullopt;
    }
    const AVCodecParameters &coded = *stream->codecpar;
    return displayed(container, *stream, coded.width, coded.height,
                     {coded.extradata, size_t(std::max(coded.extradata_size, 0))});
}

/// Reads packets until the stream's parser has met the head of a picture: broadcast and Flash containers do
/// not tell the size themselves.
Size sizeFromPackets(const VideoContainer &container) {
    const Packet packet(av_packet_alloc());
    qint64 bytes = 0;
    while (packet != nullptr && bytes < maximumBytes && !container.timedOut() &&
           av_read_frame(container.context(), packet.get()) >= 0) {
        bytes += packet->size;
        AVStream *stream = container.videoStream();
        if (stream != nullptr && stream->index == packet->stream_index) {
            const AVCodecParserContext *parser = av_stream_get_parser(stream);
            const bool parsed = parser != nullptr && parser->width > 0;
            const std::span<const quint8> coded(packet->data, size_t(std::max(packet->size, 0)));
            const Size size = displayed(container, *stream, parsed ? parser->width : stream->codecpar->width,
                                        parsed ? parser->height : stream->codecpar->height, coded);
            if (size) {
                return size;
            }
        }
        av_packet_unref(packet.get());
    }
    return std::nullopt;
}

} // namespace

std::optional<QSizeF> VideoAsset::displaySize(const FileURL &url) {
    auto container = VideoContainer::open(url, timeLimit);
    if (container == nullptr) {
        return std::nullopt;
    }
    if (const Size size = sizeFromHeader(*container)) {
        return size;
    }
    const bool streamsMayFollow = (container->context()->ctx_flags & AVFMTCTX_NOHEADER) != 0;
    if (container->videoStream() == nullptr && !streamsMayFollow) {
        return std::nullopt;
    }
    if (const Size size = sizeFromPackets(*container)) {
        return size;
    }
    // The dear way out wants to see the file from its start.
    container = VideoContainer::open(url, timeLimit);
    if (container == nullptr || avformat_find_stream_info(container->context(), nullptr) < 0) {
        return std::nullopt;
    }
    return sizeFromHeader(*container);
}
