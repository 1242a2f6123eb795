#pragma once

#include "FileURL.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QSize>

/// Makes small real media for tests. What costs an encoder is made once per build directory and copied from
/// there. Everything returns false (with a warning) when it failed: tests verify that.
///
/// The picture is pattern(): every medium shows it upright when it is presented as its metadata demands, so a
/// test can tell a picture that was turned, mirrored or stretched.
namespace MediaMaker {

/// Lower case, without the dot.
const QList<QByteArray> &photoExtensions();
const QList<QByteArray> &videoExtensions();

/// Four quadrants (top left red, top right green, bottom left blue, bottom right yellow) with some noise, so
/// that it compresses like a photo.
QImage pattern(const QSize &size);
/// Whether the image shows the pattern upright, judged by the middle of each quadrant.
bool showsPattern(const QImage &image);

/// Files below this size are no media to Mosa; makers pad up to it without harm to the format.
constexpr qint64 mediaSize = 50'000;

struct PhotoOptions {
    /// As displayed upright.
    QSize size{640, 480};
    /// 1 to 8 as in EXIF. JPEG carries the tag; HEIC, HEIF and AVIF carry the container's rotation and mirror
    /// and, as cameras do, the same tag besides. Other formats only know 1.
    int orientation = 1;
    /// Of the encoder behind HEIC and HEIF. The quickest leaves out what costs decoders their time.
    QByteArray hevcPreset = "ultrafast";
    qint64 minimumBytes = mediaSize;
};

struct VideoOptions {
    /// As displayed, after rotation, before the pixels' shape.
    QSize size{320, 240};
    double seconds = 2;
    /// Clockwise turn in degrees (0, 90, 180, 270) that the display matrix demands; mp4, m4v, mov and 3gp.
    int rotation = 0;
    /// Shape of a stored pixel, such as "2:1".
    QByteArray sampleAspect = "1:1";
    bool video = true;
    bool audio = false;
    /// Whether mp4, m4v, mov and 3gp keep their index after the data, as cameras write it.
    bool indexAtEnd = true;
    /// Instead of the codec that is usual for the extension; a name that ffmpeg -c:v takes.
    QByteArray codec = {};
    qint64 minimumBytes = mediaSize;
};

/// The extension of the target chooses the format, in any letter case.
bool photo(const FileURL &target, const PhotoOptions &options = {});
bool video(const FileURL &target, const VideoOptions &options = {});

bool write(const FileURL &target, const QByteArray &content);
QByteArray read(const FileURL &file);
/// Deterministic bytes that no format claims.
QByteArray noise(qsizetype length, quint32 seed = 1);
/// What disks, networks and jokers make of a file: nothing, zeros, noise, its beginning alone, and, so many
/// times, the whole with bytes changed where headers lie.
QList<QByteArray> damaged(const QByteArray &content, int changed);
/// An EXIF segment for JPEG, or with segment = false its bare TIFF body, that holds only the orientation.
QByteArray exifOrientation(int orientation, bool segment);

} // namespace MediaMaker
