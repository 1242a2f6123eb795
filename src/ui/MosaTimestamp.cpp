#include "MosaTimestamp.h"

#include <algorithm>
#include <cmath>

QString mosaTimestamp(double seconds) {
    constexpr double longest = 9.2e18; // what a 64-bit integer holds
    if (!std::isfinite(seconds) || seconds < 0) {
        return QStringLiteral("0:00");
    }
    const auto total = qint64(std::min(seconds, longest));
    const QLatin1Char zero('0');
    const QString rest = QStringLiteral(":%1").arg(total % 60, 2, 10, zero);
    if (total < 3600) {
        return QString::number(total / 60) + rest;
    }
    return QStringLiteral("%1:%2").arg(total / 3600).arg(total % 3600 / 60, 2, 10, zero) + rest;
}
