#pragma once

#include "FileURL.h"
#include "MediaKind.h"

#include <chrono>

/// A point in time as file systems record it.
using Timestamp = std::chrono::sys_time<std::chrono::nanoseconds>;

/// One video or photo. Lives in memory only; every scan makes it anew.
struct MediaFile {
    Q_GADGET
    Q_PROPERTY(QString id READ id CONSTANT)
    Q_PROPERTY(FileURL url MEMBER url CONSTANT)
    Q_PROPERTY(MediaKinds::MediaKind kind MEMBER kind CONSTANT)
    Q_PROPERTY(double aspectRatio MEMBER aspectRatio CONSTANT)

public:
    FileURL url;
    MediaKind kind = MediaKind::video;
    /// Birth time, else modification time, else Timestamp::min().
    Timestamp addedAt = Timestamp::min();
    /// Width divided by height as displayed, within [0.35, 3.5].
    double aspectRatio = 16.0 / 9.0;

    /// The path, under which lists, flags and caches know the file.
    QString id() const { return url.path(); }

    friend bool operator==(const MediaFile &, const MediaFile &) = default;
};

size_t qHash(const MediaFile &file, size_t seed = 0) noexcept;
