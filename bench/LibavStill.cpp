#include "ThumbnailReferences.h"

#include <algorithm>
#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace {

struct Deleter {
    void operator()(AVFormatContext *context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
    void operator()(SwsContext *context) const { sws_freeContext(context); }
};

template <typename Type>
using Av = std::unique_ptr<Type, Deleter>;

QImage scaled(const AVFrame &frame, int maxPixelSize) {
    QSize size(frame.width, frame.height);
    if (std::max(frame.width, frame.height) > maxPixelSize) {
        size.scale(maxPixelSize, maxPixelSize, Qt::KeepAspectRatio);
    }
    const Av<SwsContext> scaler(sws_getContext(frame.width, frame.height, AVPixelFormat(frame.format),
                                               size.width(), size.height(), AV_PIX_FMT_BGR0, SWS_AREA,
                                               nullptr, nullptr, nullptr));
    QImage image(size, QImage::Format_RGB32);
    uint8_t *planes[] = {image.bits()};
    const int strides[] = {int(image.bytesPerLine())};
    sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, strides);
    return image;
}

} // namespace

QImage ThumbnailReferences::libavStill(const FileURL &url, int maxPixelSize) {
    AVFormatContext *opened = nullptr;
    if (avformat_open_input(&opened, url.nativePath().constData(), nullptr, nullptr) < 0) {
        return {};
    }
    const Av<AVFormatContext> context(opened);
    const int index = av_find_best_stream(opened, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    AVStream *stream = opened->streams[index];
    const AVCodec *codec = avcodec_find_decoder(stream->codecpar->codec_id);
    const Av<AVCodecContext> decoder(avcodec_alloc_context3(codec));
    avcodec_parameters_to_context(decoder.get(), stream->codecpar);
    decoder->thread_count = 1;
    avcodec_open2(decoder.get(), codec, nullptr);
    av_seek_frame(opened, -1, opened->duration / 5, AVSEEK_FLAG_BACKWARD);
    const Av<AVPacket> packet(av_packet_alloc());
    const Av<AVFrame> frame(av_frame_alloc());
    while (av_read_frame(opened, packet.get()) == 0) {
        const bool wanted = packet->stream_index == index && (packet->flags & AV_PKT_FLAG_KEY) != 0;
        if (wanted) {
            avcodec_send_packet(decoder.get(), packet.get());
            avcodec_send_packet(decoder.get(), nullptr);
            return avcodec_receive_frame(decoder.get(), frame.get()) == 0 ? scaled(*frame, maxPixelSize)
                                                                          : QImage();
        }
        av_packet_unref(packet.get());
    }
    return {};
}
