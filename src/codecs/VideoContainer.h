#pragma once

#include "FileURL.h"

#include <chrono>
#include <cstdint>
#include <memory>

struct AVFormatContext;
struct AVStream;

/// An opened video container, for the files of this folder that read videos. One thread at a time.
///
/// Only the header has been read: call avformat_find_stream_info() where that is not enough. The file is read
/// through its own descriptor, so that any path works, pipes and devices are refused, and a container cannot
/// make the demuxer open anything else. Reading ends with an error once the time limit has passed, which
/// bounds hostile files. FFmpeg's messages are silenced.
class VideoContainer {
public:
    /// Null when the file cannot be opened or no demuxer knows it.
    static std::unique_ptr<VideoContainer> open(const FileURL &url, std::chrono::milliseconds timeLimit);

    VideoContainer(const VideoContainer &) = delete;
    VideoContainer &operator=(const VideoContainer &) = delete;
    ~VideoContainer();

    /// Owned by the container.
    AVFormatContext *context() const;
    /// The first video stream that is a moving picture (cover art is passed over), or null. Streams of MPEG
    /// and Flash containers may appear only while packets are being read.
    AVStream *videoStream() const;
    /// How the stream's picture is to be turned, as nine numbers of the form of libavutil's display.h; null
    /// when it is shown as stored.
    static const int32_t *displayMatrix(const AVStream *stream);
    /// Whether the time limit has passed; whoever decodes looks at it between frames.
    bool timedOut() const;

private:
    struct Private;
    explicit VideoContainer(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};
