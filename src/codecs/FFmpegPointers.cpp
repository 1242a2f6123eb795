#include "FFmpegPointers.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace FFmpeg {

void Deleter::operator()(AVCodecContext *context) const {
    avcodec_free_context(&context);
}

void Deleter::operator()(AVFrame *frame) const {
    av_frame_free(&frame);
}

void Deleter::operator()(AVPacket *packet) const {
    av_packet_free(&packet);
}

} // namespace FFmpeg
