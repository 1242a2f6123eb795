#include "HeaderBytes.h"

#include <cstring>

bool HeaderBytes::matches(qint64 at, const char *text, qint64 length) {
    const uchar *bytes = find(at, length);
    return bytes != nullptr && std::memcmp(bytes, text, size_t(length)) == 0;
}

const uchar *HeaderBytes::find(qint64 at, qint64 length) {
    if (at < 0 || at > m_file.size() - length) {
        return nullptr;
    }
    if (at < m_begin || at + length > m_begin + m_length) {
        if (++m_moves > maximumMoves) {
            return nullptr;
        }
        m_begin = at;
        m_length = m_file.read(at, m_window.data(), windowSize);
        if (m_length < length) {
            m_length = 0;
            return nullptr;
        }
    }
    return m_window.data() + (at - m_begin);
}
