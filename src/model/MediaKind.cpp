#include "MediaKind.h"

QString rawValue(MediaKind kind) {
    return kind == MediaKind::video ? QStringLiteral("video") : QStringLiteral("photo");
}

std::optional<MediaKind> mediaKindFromRawValue(const QString &raw) {
    for (const MediaKind kind : {MediaKind::video, MediaKind::photo}) {
        if (raw == rawValue(kind)) {
            return kind;
        }
    }
    return std::nullopt;
}
