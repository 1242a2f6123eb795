#include "CodedColour.h"

#include <QPointF>

#include <algorithm>
#include <cmath>

namespace {

enum Primaries { bt2020 = 9, displayP3 = 12 };
enum Transfer { linearLight = 8, perceptualQuantizer = 16, hybridLogGamma = 18 };

/// What a screen shows as white, in cd/m², as ITU-R BT.2408 recommends for high dynamic range.
constexpr double referenceWhite = 203;

/// Linear light by signal, 1 at the reference white (SMPTE ST 2084).
double linearFromPQ(double signal) {
    constexpr double m1 = 2610.0 / 16384;
    constexpr double m2 = 2523.0 / 4096 * 128;
    constexpr double c1 = 3424.0 / 4096;
    constexpr double c2 = 2413.0 / 4096 * 32;
    constexpr double c3 = 2392.0 / 4096 * 32;
    const double power = std::pow(signal, 1 / m2);
    return 10000 / referenceWhite * std::pow(std::max(power - c1, 0.0) / (c2 - c3 * power), 1 / m1);
}

/// The same for ITU-R BT.2100's other function, on a screen of 1000 cd/m².
double linearFromHLG(double signal) {
    constexpr double a = 0.17883277;
    constexpr double b = 0.28466892;
    constexpr double c = 0.55991073;
    const double scene = signal <= 0.5 ? signal * signal / 3 : (std::exp((signal - c) / a) + b) / 12;
    return 1000 / referenceWhite * std::pow(scene, 1.2);
}

/// Brings 0…brightest into 0…1 and leaves the dark tones nearly alone.
double compressed(double linear, double brightest) {
    return linear * (1 + linear / (brightest * brightest)) / (1 + linear);
}

QList<uint16_t> transferTable(double (*linear)(double)) {
    constexpr int entries = 1024;
    const double brightest = linear(1.0);
    QList<uint16_t> table;
    table.reserve(entries);
    for (int i = 0; i < entries; ++i) {
        const double value = compressed(linear(double(i) / (entries - 1)), brightest);
        table.append(uint16_t(std::lround(65535 * std::clamp(value, 0.0, 1.0))));
    }
    return table;
}

struct Chromaticities {
    QPointF white{0.3127, 0.3290};
    QPointF red{0.640, 0.330};
    QPointF green{0.300, 0.600};
    QPointF blue{0.150, 0.060};
};

Chromaticities chromaticities(int primaries) {
    Chromaticities points;
    if (primaries == bt2020) {
        points.red = {0.708, 0.292};
        points.green = {0.170, 0.797};
        points.blue = {0.131, 0.046};
    } else if (primaries == displayP3) {
        points.red = {0.680, 0.320};
        points.green = {0.265, 0.690};
    }
    return points;
}

} // namespace

namespace CodedColour {

QColorSpace colorSpace(int primaries, int transferCharacteristics) {
    const auto [white, red, green, blue] = chromaticities(primaries);
    switch (transferCharacteristics) {
    case perceptualQuantizer: {
        static const QList<uint16_t> table = transferTable(linearFromPQ);
        return {white, red, green, blue, table};
    }
    case hybridLogGamma: {
        static const QList<uint16_t> table = transferTable(linearFromHLG);
        return {white, red, green, blue, table};
    }
    case linearLight:
        return {white, red, green, blue, QColorSpace::TransferFunction::Linear};
    default:
        return primaries == bt2020 || primaries == displayP3
                   ? QColorSpace(white, red, green, blue, QColorSpace::TransferFunction::SRgb)
                   : QColorSpace();
    }
}

} // namespace CodedColour
