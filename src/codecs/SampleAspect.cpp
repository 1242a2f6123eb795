#include "SampleAspect.h"

#include <algorithm>
#include <array>
#include <vector>

namespace {

using Bytes = std::span<const quint8>;

/// Reads bits of an H.264 parameter set; past the end it yields zeros and says so.
class BitReader {
public:
    explicit BitReader(std::vector<quint8> bytes) : m_bytes(std::move(bytes)) {}

    bool exhausted() const { return m_at > m_bytes.size() * 8; }

    quint32 bits(int count) {
        quint32 value = 0;
        for (; count > 0; --count, ++m_at) {
            const quint32 bit = m_at / 8 < m_bytes.size() ? m_bytes[m_at / 8] >> (7 - m_at % 8) & 1 : 0;
            value = value << 1 | bit;
        }
        return value;
    }
    bool flag() { return bits(1) != 0; }

    /// Exponential Golomb code.
    quint32 unsignedNumber() {
        int zeros = 0;
        while (zeros < 32 && !exhausted() && !flag()) {
            ++zeros;
        }
        return zeros >= 32 ? 0 : (quint32(1) << zeros) - 1 + bits(zeros);
    }
    qint32 signedNumber() {
        const quint32 code = unsignedNumber();
        const auto half = qint32(code / 2);
        return code % 2 != 0 ? half + 1 : -half;
    }

private:
    std::vector<quint8> m_bytes;
    size_t m_at = 0;
};

/// Without the bytes that keep the payload free of start codes.
std::vector<quint8> payload(Bytes unit) {
    constexpr size_t longest = 4096;
    std::vector<quint8> bytes;
    size_t zeros = 0;
    for (const quint8 byte : unit.first(std::min(unit.size(), longest))) {
        if (zeros >= 2 && byte == 3) {
            zeros = 0;
            continue;
        }
        zeros = byte == 0 ? zeros + 1 : 0;
        bytes.push_back(byte);
    }
    return bytes;
}

/// What follows the next start code 00 00 01, up to the end of the bytes.
Bytes afterStartCode(Bytes bytes) {
    static constexpr std::array<quint8, 3> code{0, 0, 1};
    const auto found = std::search(bytes.begin(), bytes.end(), code.begin(), code.end());
    return found == bytes.end() ? Bytes() : bytes.subspan(size_t(found - bytes.begin()) + code.size());
}

void skipScalingList(BitReader &reader, int length) {
    int last = 8;
    int next = 8;
    for (int i = 0; i < length && !reader.exhausted(); ++i) {
        if (next != 0) {
            next = (last + reader.signedNumber() % 256) & 0xFF;
        }
        last = next == 0 ? last : next;
    }
}

void skipChromaFormat(BitReader &reader) {
    constexpr quint32 separatePlanes = 3;
    const quint32 chromaFormat = reader.unsignedNumber();
    if (chromaFormat == separatePlanes) {
        reader.flag();
    }
    reader.unsignedNumber(); // luma depth
    reader.unsignedNumber(); // chroma depth
    reader.flag();           // transform bypass
    if (reader.flag()) {
        for (int i = 0; i < (chromaFormat == separatePlanes ? 12 : 8); ++i) {
            if (reader.flag()) {
                skipScalingList(reader, i < 6 ? 16 : 64);
            }
        }
    }
}

void skipPictureOrder(BitReader &reader) {
    const quint32 type = reader.unsignedNumber();
    if (type == 0) {
        reader.unsignedNumber();
    } else if (type == 1) {
        reader.flag();
        reader.signedNumber();
        reader.signedNumber();
        const quint32 cycle = reader.unsignedNumber();
        for (quint32 i = 0; i < cycle && !reader.exhausted(); ++i) {
            reader.signedNumber();
        }
    }
}

bool hasChromaFormat(quint32 profile) {
    static constexpr std::array<quint32, 13> profiles{100, 110, 122, 244, 44,  83, 86,
                                                      118, 128, 138, 139, 134, 135};
    return std::find(profiles.begin(), profiles.end(), profile) != profiles.end();
}

/// Table E-1 of the H.264 standard (ITU-T H.264, Annex E).
std::optional<double> aspectOf(BitReader &reader) {
    static constexpr std::array<std::array<int, 2>, 17> shapes{{{0, 0},
                                                                {1, 1},
                                                                {12, 11},
                                                                {10, 11},
                                                                {16, 11},
                                                                {40, 33},
                                                                {24, 11},
                                                                {20, 11},
                                                                {32, 11},
                                                                {80, 33},
                                                                {18, 11},
                                                                {15, 11},
                                                                {64, 33},
                                                                {160, 99},
                                                                {4, 3},
                                                                {3, 2},
                                                                {2, 1}}};
    constexpr quint32 extended = 255;
    const quint32 index = reader.bits(8);
    const double width = index == extended ? reader.bits(16) : index < shapes.size() ? shapes[index][0] : 0;
    const double height = index == extended ? reader.bits(16) : index < shapes.size() ? shapes[index][1] : 0;
    if (reader.exhausted() || width <= 0 || height <= 0) {
        return std::nullopt;
    }
    return width / height;
}

/// The unit begins behind the byte that tells its type.
std::optional<double> ofParameterSet(Bytes unit) {
    BitReader reader(payload(unit));
    const quint32 profile = reader.bits(8);
    reader.bits(16);         // constraints and level
    reader.unsignedNumber(); // its number
    if (hasChromaFormat(profile)) {
        skipChromaFormat(reader);
    }
    reader.unsignedNumber(); // frame numbers
    skipPictureOrder(reader);
    reader.unsignedNumber(); // reference frames
    reader.flag();           // gaps
    reader.unsignedNumber(); // width
    reader.unsignedNumber(); // height
    if (!reader.flag()) {    // frames only
        reader.flag();
    }
    reader.flag(); // direct inference
    if (reader.flag()) {
        for (int i = 0; i < 4; ++i) {
            reader.unsignedNumber(); // crop
        }
    }
    const bool usability = reader.flag();
    return usability && reader.flag() && !reader.exhausted() ? aspectOf(reader) : std::nullopt;
}

} // namespace

std::optional<double> SampleAspect::ofH264(Bytes bytes) {
    constexpr quint8 parameterSet = 7;
    constexpr quint8 typeMask = 0x1F;
    // avcC: version 1, three bytes of profile, two of counts, then a length and the set.
    if (bytes.size() > 9 && bytes[0] == 1 && (bytes[8] & typeMask) == parameterSet) {
        return ofParameterSet(bytes.subspan(9));
    }
    for (Bytes unit = afterStartCode(bytes); !unit.empty(); unit = afterStartCode(unit)) {
        if ((unit[0] & typeMask) == parameterSet) {
            return ofParameterSet(unit.subspan(1));
        }
    }
    return std::nullopt;
}

std::optional<double> SampleAspect::ofMpegVideo(Bytes bytes) {
    constexpr quint8 sequence = 0xB3;
    constexpr quint8 extension = 0xB5;
    // Pixel height divided by width, ISO/IEC 11172-2, 2.4.3.2.
    static constexpr std::array<double, 15> mpeg1{0,      1,      0.6735, 0.7031, 0.7615,
                                                  0.8055, 0.8437, 0.8935, 0.9157, 0.9815,
                                                  1.0255, 1.0695, 1.0950, 1.1575, 1.2015};
    // Shape of the whole picture, ISO/IEC 13818-2, 6.3.3; 1 stands for square pixels.
    static constexpr std::array<double, 5> mpeg2{0, 0, 4.0 / 3, 16.0 / 9, 2.21};
    for (Bytes unit = afterStartCode(bytes); unit.size() > 8; unit = afterStartCode(unit)) {
        if (unit[0] != sequence) {
            continue;
        }
        const int width = unit[1] << 4 | unit[2] >> 4;
        const int height = (unit[2] & 0x0F) << 8 | unit[3];
        const size_t code = unit[4] >> 4;
        const Bytes next = afterStartCode(unit);
        const bool second = !next.empty() && next[0] == extension;
        if (!second) {
            return code > 0 && code < mpeg1.size() ? std::optional(1 / mpeg1[code]) : std::nullopt;
        }
        if (code == 1) {
            return 1.0;
        }
        if (code == 0 || code >= mpeg2.size() || width == 0 || height == 0) {
            return std::nullopt;
        }
        return mpeg2[code] * height / width;
    }
    return std::nullopt;
}
