#pragma once

#include <memory>

struct AVCodecContext;
struct AVFrame;
struct AVPacket;

/// Owners of FFmpeg's objects, for the files of this folder that read videos.
namespace FFmpeg {

struct Deleter {
    void operator()(AVCodecContext *context) const;
    void operator()(AVFrame *frame) const;
    void operator()(AVPacket *packet) const;
};

using Decoder = std::unique_ptr<AVCodecContext, Deleter>;
using Frame = std::unique_ptr<AVFrame, Deleter>;
using Packet = std::unique_ptr<AVPacket, Deleter>;

} // namespace FFmpeg
