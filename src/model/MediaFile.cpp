#include "MediaFile.h"

#include <QHash>

#include <bit>

size_t qHash(const MediaFile &file, size_t seed) noexcept {
    // Adding a positive zero turns -0.0, which equals 0.0, into 0.0.
    const auto ratioBits = std::bit_cast<quint64>(file.aspectRatio + 0.0);
    return qHashMulti(seed, file.url, file.kind, qint64(file.addedAt.time_since_epoch().count()), ratioBits);
}
