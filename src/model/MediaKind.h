#pragma once

#include <QHash>
#include <QObject>
#include <QString>

#include <optional>

/// Holds the enumeration for the views, which can name an enumeration only through its type.
class MediaKinds : public QObject {
    Q_OBJECT

public:
    MediaKinds() = delete;

    /// What a media file is, told by its extension alone.
    /// QML finds only capitalised names, hence the twins.
    enum class MediaKind { video, photo, Video = video, Photo = photo };
    Q_ENUM(MediaKind)

    /// Hashes the raw value, as every record that holds a kind does.
    friend size_t qHash(MediaKind kind, size_t seed = 0) noexcept { return qHash(rawValue(kind), seed); }
    friend QString rawValue(MediaKind kind);
};

using MediaKind = MediaKinds::MediaKind;

/// "video" or "photo".
QString rawValue(MediaKind kind);
/// The reverse of rawValue, to the letter; none for any other text.
std::optional<MediaKind> mediaKindFromRawValue(const QString &raw);
