#include "VideoContainer.h"

#include "RegularFile.h"

#include <cerrno>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

namespace {

/// As large as FFmpeg's own buffer for files.
constexpr int readBufferSize = 32768;
/// Content that no demuxer claims within so many bytes is not a video. The default of 1 MiB makes every file
/// of noise cost tens of milliseconds.
constexpr int formatProbeSize = 65536;

/// The formats that video files come in. Others are none, and some of those, playlists and descriptions of
/// streams, would have FFmpeg open connections of its own whatever refuseToOpen says.
constexpr char formats[] =
    "mov,matroska,avi,asf,flv,mpegts,mpeg,mpegvideo,m4v,h264,hevc,ogg,rm,wtv,mxf,nut,dv";

struct FormatCloser {
    void operator()(AVFormatContext *context) const { avformat_close_input(&context); }
};

struct IOCloser {
    void operator()(AVIOContext *io) const {
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};

/// Playlists and references to other files or to the network stay closed.
int refuseToOpen(AVFormatContext *, AVIOContext **, const char *, int, AVDictionary **) {
    return AVERROR(EPERM);
}

} // namespace

struct VideoContainer::Private {
    RegularFile file;
    std::chrono::steady_clock::time_point deadline;
    qint64 position = 0;
    std::unique_ptr<AVIOContext, IOCloser> io;
    // Declared after what it reads from, hence closed before it.
    std::unique_ptr<AVFormatContext, FormatCloser> format;

    Private(RegularFile opened, std::chrono::milliseconds timeLimit)
        : file(std::move(opened)), deadline(std::chrono::steady_clock::now() + timeLimit) {}

    bool timedOut() const { return std::chrono::steady_clock::now() >= deadline; }

    static int interrupted(void *opaque) { return static_cast<Private *>(opaque)->timedOut() ? 1 : 0; }

    static int read(void *opaque, uint8_t *target, int length) {
        auto *self = static_cast<Private *>(opaque);
        if (self->timedOut()) {
            return AVERROR_EXIT;
        }
        const qint64 got = self->file.read(self->position, target, length);
        if (got < 0) {
            return AVERROR(errno);
        }
        self->position += got;
        return got == 0 ? AVERROR_EOF : int(got);
    }

    static int64_t seek(void *opaque, int64_t offset, int whence) {
        auto *self = static_cast<Private *>(opaque);
        switch (whence & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return self->file.size();
        case SEEK_SET:
            break;
        case SEEK_CUR:
            offset += self->position;
            break;
        case SEEK_END:
            offset += self->file.size();
            break;
        default:
            return AVERROR(EINVAL);
        }
        if (offset < 0) {
            return AVERROR(EINVAL);
        }
        return self->position = offset;
    }

    bool makeIO() {
        auto *buffer = static_cast<unsigned char *>(av_malloc(readBufferSize));
        if (buffer == nullptr) {
            return false;
        }
        io.reset(avio_alloc_context(buffer, readBufferSize, 0, this, read, nullptr, seek));
        if (io == nullptr) {
            av_free(buffer);
        }
        return io != nullptr;
    }

    bool openFormat(const char *name) {
        AVFormatContext *context = avformat_alloc_context();
        if (context == nullptr) {
            return false;
        }
        context->pb = io.get();
        context->flags |= AVFMT_FLAG_CUSTOM_IO;
        context->io_open = refuseToOpen;
        context->format_whitelist = av_strdup(formats);
        context->interrupt_callback = {.callback = interrupted, .opaque = this};
        context->format_probesize = formatProbeSize;
        // On failure the context is freed and the pointer cleared.
        const int result = avformat_open_input(&context, name, nullptr, nullptr);
        format.reset(context);
        return result == 0;
    }
};

VideoContainer::VideoContainer(std::unique_ptr<Private> opened) : d(std::move(opened)) {}

VideoContainer::~VideoContainer() = default;

std::unique_ptr<VideoContainer> VideoContainer::open(const FileURL &url,
                                                     std::chrono::milliseconds timeLimit) {
    [[maybe_unused]] static const bool silenced = [] {
        av_log_set_level(AV_LOG_QUIET);
        return true;
    }();
    auto file = RegularFile::open(url);
    if (!file) {
        return nullptr;
    }
    auto d = std::make_unique<Private>(std::move(*file), timeLimit);
    // The name only lends its extension to the guess at the format.
    if (!d->makeIO() || !d->openFormat(url.nativeName().constData())) {
        return nullptr;
    }
    return std::unique_ptr<VideoContainer>(new VideoContainer(std::move(d)));
}

AVFormatContext *VideoContainer::context() const {
    return d->format.get();
}

AVStream *VideoContainer::videoStream() const {
    constexpr int still = AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS;
    const AVFormatContext *context = d->format.get();
    for (unsigned i = 0; i < context->nb_streams; ++i) {
        AVStream *stream = context->streams[i];
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && (stream->disposition & still) == 0) {
            return stream;
        }
    }
    return nullptr;
}

const int32_t *VideoContainer::displayMatrix(const AVStream *stream) {
    constexpr size_t matrixSize = 9 * sizeof(int32_t);
#if LIBAVFORMAT_VERSION_MAJOR >= 61
    const AVPacketSideData *found = av_packet_side_data_get(
        stream->codecpar->coded_side_data, stream->codecpar->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
    const uint8_t *data = found == nullptr ? nullptr : found->data;
    const size_t size = found == nullptr ? 0 : found->size;
#else
    size_t size = 0;
    const uint8_t *data = av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
#endif
    return size >= matrixSize ? reinterpret_cast<const int32_t *>(data) : nullptr;
}

bool VideoContainer::timedOut() const {
    return d->timedOut();
}
