#include "Collation.h"

#include <unicode/ucol.h>

#include <array>

void Collation::Closer::operator()(UCollator *collator) const {
    ucol_close(collator);
}

Collation::Collation() {
    UErrorCode status = U_ZERO_ERROR;
    m_collator.reset(ucol_open("root", &status));
    ucol_setAttribute(m_collator.get(), UCOL_STRENGTH, UCOL_SECONDARY, &status);
    ucol_setAttribute(m_collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    // Composed and decomposed forms of a name are the same name.
    ucol_setAttribute(m_collator.get(), UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
    if (U_FAILURE(status)) {
        m_collator.reset();
    }
}

QByteArray Collation::sortKey(const QString &name) const {
    if (m_collator == nullptr) {
        // Without ICU's data there is an order still, though a plain one.
        return name.toCaseFolded().toUtf8();
    }
    const auto *text = reinterpret_cast<const UChar *>(name.utf16());
    std::array<uint8_t, 512> buffer{};
    const int32_t length =
        ucol_getSortKey(m_collator.get(), text, int32_t(name.size()), buffer.data(), int32_t(buffer.size()));
    if (size_t(length) <= buffer.size()) {
        return {reinterpret_cast<const char *>(buffer.data()), length};
    }
    QByteArray key(length, '\0');
    ucol_getSortKey(m_collator.get(), text, int32_t(name.size()), reinterpret_cast<uint8_t *>(key.data()),
                    length);
    return key;
}
