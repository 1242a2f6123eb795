#pragma once

#include <QString>

/// A time in seconds as a clock shows it: "0:59", "59:59", "100:00:00". Fractions are dropped; what is
/// negative or not finite is "0:00".
QString mosaTimestamp(double seconds);
