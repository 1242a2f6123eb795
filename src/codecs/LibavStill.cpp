#include "LibavStill.h"

#include "FFmpegPointers.h"
#include "VideoContainer.h"
#include "VideoFrameScaler.h"
#include "VideoStill.h"

#include <QColorSpace>
#include <QTransform>

#include <cmath>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/frame.h>
}

namespace {

using FFmpeg::Decoder;
using FFmpeg::Frame;
using FFmpeg::Packet;

/// How far a damaged or strange stream is followed before another way is tried.
constexpr int mostPackets = 2000;

enum class SeekTarget { sampleTime, start };

/// One attempt at a still of one freshly opened video.
class Extraction {
public:
    Extraction(VideoContainer &container, AVStream *stream)
        : m_container(container), m_stream(stream), m_packet(av_packet_alloc()), m_decoder(open(stream)) {
        // Sound and subtitles need not be read where the container lets them be skipped.
        for (unsigned i = 0; i < container.context()->nb_streams; ++i) {
            AVStream *other = container.context()->streams[i];
            other->discard = other == stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
        }
    }

    Frame frame(SeekTarget target);

private:
    static Decoder open(const AVStream *stream);
    bool seek(double seconds);
    /// Feeds the decoder one key frame and drains it, which spares it every frame between.
    Frame keyFrame();
    /// Feeds the decoder until a frame comes out.
    Frame firstFrame();
    bool readPacket();
    Frame receive();

    VideoContainer &m_container;
    AVStream *m_stream;
    Packet m_packet;
    Decoder m_decoder;
};

Decoder Extraction::open(const AVStream *stream) {
    const AVCodec *codec = avcodec_find_decoder(stream->codecpar->codec_id);
    const qint64 pixels = qint64(stream->codecpar->width) * stream->codecpar->height;
    if (codec == nullptr || pixels > VideoStill::largestFrame) {
        return nullptr;
    }
    Decoder decoder(avcodec_alloc_context3(codec));
    if (decoder == nullptr || avcodec_parameters_to_context(decoder.get(), stream->codecpar) < 0) {
        return nullptr;
    }
    decoder->pkt_timebase = stream->time_base;
    decoder->max_pixels = VideoStill::largestFrame;
    decoder->thread_count = 1;
    return avcodec_open2(decoder.get(), codec, nullptr) == 0 ? std::move(decoder) : nullptr;
}

/// The time in seconds at which the picture is taken.
double sampleTime(const AVFormatContext *context, const AVStream *stream) {
    double duration = 0;
    if (context->duration != AV_NOPTS_VALUE) {
        duration = double(context->duration) / AV_TIME_BASE;
    } else if (stream->duration != AV_NOPTS_VALUE) {
        duration = double(stream->duration) * av_q2d(stream->time_base);
    }
    return std::isfinite(duration) && duration > 0 ? duration * 0.2 : 1.0;
}

Frame Extraction::frame(SeekTarget target) {
    if (m_decoder == nullptr || m_packet == nullptr) {
        return nullptr;
    }
    if (target == SeekTarget::start) {
        return firstFrame();
    }
    const double time = sampleTime(m_container.context(), m_stream);
    if (seek(time)) {
        if (Frame found = keyFrame()) {
            return found;
        }
        if (seek(time)) {
            if (Frame found = firstFrame()) {
                return found;
            }
        }
    }
    return nullptr;
}

bool Extraction::seek(double seconds) {
    avcodec_flush_buffers(m_decoder.get());
    double ticks = seconds / av_q2d(m_stream->time_base);
    if (m_stream->start_time != AV_NOPTS_VALUE) {
        ticks += double(m_stream->start_time);
    }
    constexpr double furthest = 4e18;
    return std::abs(ticks) < furthest &&
           av_seek_frame(m_container.context(), m_stream->index, int64_t(ticks), AVSEEK_FLAG_BACKWARD) >= 0;
}

bool Extraction::readPacket() {
    for (int i = 0; i < mostPackets && !m_container.timedOut(); ++i) {
        av_packet_unref(m_packet.get());
        if (av_read_frame(m_container.context(), m_packet.get()) < 0) {
            return false;
        }
        if (m_packet->stream_index == m_stream->index) {
            return true;
        }
    }
    return false;
}

Frame Extraction::receive() {
    Frame frame(av_frame_alloc());
    if (frame == nullptr || avcodec_receive_frame(m_decoder.get(), frame.get()) < 0 ||
        (frame->flags & AV_FRAME_FLAG_CORRUPT) != 0) {
        return nullptr;
    }
    return frame;
}

Frame Extraction::keyFrame() {
    for (int i = 0; i < mostPackets && readPacket(); ++i) {
        if ((m_packet->flags & AV_PKT_FLAG_KEY) == 0) {
            continue;
        }
        const bool sent = avcodec_send_packet(m_decoder.get(), m_packet.get()) == 0 &&
                          avcodec_send_packet(m_decoder.get(), nullptr) == 0;
        return sent ? receive() : nullptr;
    }
    return nullptr;
}

Frame Extraction::firstFrame() {
    for (int i = 0; i < mostPackets && readPacket(); ++i) {
        // A packet that cannot be decoded is passed over; the next one may do.
        avcodec_send_packet(m_decoder.get(), m_packet.get());
        if (Frame found = receive()) {
            return found;
        }
    }
    avcodec_send_packet(m_decoder.get(), nullptr);
    return receive();
}

/// Whether the header told all that it takes to seek and to decode.
bool isComplete(const AVFormatContext *context, const AVStream *stream) {
    return stream != nullptr && context->duration != AV_NOPTS_VALUE &&
           stream->codecpar->codec_id != AV_CODEC_ID_NONE && stream->codecpar->width > 0;
}

/// The turn that brings the picture upright, snapped to quarters.
QTransform uprightTransform(const AVStream *stream, const AVFrame *frame) {
    const int32_t *matrix = VideoContainer::displayMatrix(stream);
    if (matrix == nullptr) {
        const AVFrameSideData *data = av_frame_get_side_data(frame, AV_FRAME_DATA_DISPLAYMATRIX);
        matrix = data != nullptr ? reinterpret_cast<const int32_t *>(data->data) : nullptr;
    }
    if (matrix == nullptr) {
        return {};
    }
    const auto sign = [](int32_t value) { return value < 0 ? -1.0 : 1.0; };
    if (std::abs(double(matrix[0])) >= std::abs(double(matrix[1]))) {
        return {sign(matrix[0]), 0, 0, sign(matrix[4]), 0, 0};
    }
    return {0, sign(matrix[1]), sign(matrix[3]), 0, 0, 0};
}

QImage stillAt(SeekTarget target, const FileURL &url, int maxPixelSize) {
    const auto container = VideoContainer::open(url, std::chrono::seconds(VideoStill::timeLimit));
    if (container == nullptr) {
        return {};
    }
    AVFormatContext *context = container->context();
    AVStream *stream = container->videoStream();
    if (!isComplete(context, stream)) {
        avformat_find_stream_info(context, nullptr);
        stream = container->videoStream();
    }
    if (stream == nullptr) {
        return {};
    }
    const Frame frame = Extraction(*container, stream).frame(target);
    if (frame == nullptr) {
        return {};
    }
    const double pixelShape = av_q2d(av_guess_sample_aspect_ratio(context, stream, frame.get()));
    QImage scaled = VideoFrameScaler::scaled(*frame, pixelShape, maxPixelSize);
    const QTransform upright = uprightTransform(stream, frame.get());
    if (upright.isIdentity()) {
        return scaled;
    }
    QImage turned = scaled.transformed(upright);
    turned.setColorSpace(scaled.colorSpace());
    return turned;
}

} // namespace

namespace LibavStill {

QImage frame(const FileURL &url, int maxPixelSize) {
    const QImage still = stillAt(SeekTarget::sampleTime, url, maxPixelSize);
    // The sample time may lie behind the end of the data, or nothing there can be decoded.
    return still.isNull() ? stillAt(SeekTarget::start, url, maxPixelSize) : still;
}

} // namespace LibavStill
