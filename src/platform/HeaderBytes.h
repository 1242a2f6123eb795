#pragma once

#include "RegularFile.h"

#include <array>
#include <optional>

/// Small numbers at scattered places of a file, read through one small window. What lies behind the end of
/// the file, and anything once the window has been moved too often, is absent; nothing is ever read in full.
class HeaderBytes {
public:
    enum class Order { big, little };

    explicit HeaderBytes(const RegularFile &file) : m_file(file) {}

    std::optional<quint8> u8(qint64 at) { return number<quint8>(at, 1, Order::big); }
    std::optional<quint16> u16(qint64 at, Order order) { return number<quint16>(at, 2, order); }
    std::optional<quint32> u24(qint64 at, Order order) { return number<quint32>(at, 3, order); }
    std::optional<quint32> u32(qint64 at, Order order) { return number<quint32>(at, 4, order); }
    std::optional<quint64> u64(qint64 at, Order order) { return number<quint64>(at, 8, order); }
    /// Whether the text stands there.
    bool matches(qint64 at, const char *text, qint64 length);

private:
    static constexpr qint64 windowSize = 2048;
    static constexpr int maximumMoves = 1024;

    template <typename Number>
    std::optional<Number> number(qint64 at, qint64 length, Order order) {
        const uchar *bytes = find(at, length);
        if (bytes == nullptr) {
            return std::nullopt;
        }
        quint64 value = 0;
        for (qint64 i = 0; i < length; ++i) {
            value = value << 8 | bytes[order == Order::big ? i : length - 1 - i];
        }
        return Number(value);
    }

    const uchar *find(qint64 at, qint64 length);

    const RegularFile &m_file;
    std::array<uchar, windowSize> m_window;
    qint64 m_begin = 0;
    qint64 m_length = 0;
    int m_moves = 0;
};
