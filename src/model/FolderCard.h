#pragma once

#include "MediaFile.h"

#include <QVariant>

#include <optional>

/// A subfolder that holds videos as well as photos, shown as a card to descend into.
struct FolderCard {
    Q_GADGET
    Q_PROPERTY(QString id READ id CONSTANT)
    Q_PROPERTY(FileURL url MEMBER url CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(qint64 itemCount MEMBER itemCount CONSTANT)
    /// Undefined when absent.
    Q_PROPERTY(QVariant representative READ representativeVariant CONSTANT)

public:
    FileURL url;
    QString name;
    /// Media files anywhere below the folder.
    qint64 itemCount = 0;
    /// The newest of them, whose picture stands for the folder.
    std::optional<MediaFile> representative;

    QString id() const { return url.path(); }
    QVariant representativeVariant() const {
        return representative ? QVariant::fromValue(*representative) : QVariant();
    }

    friend bool operator==(const FolderCard &, const FolderCard &) = default;
};

inline size_t qHash(const FolderCard &card, size_t seed = 0) noexcept {
    const size_t hash =
        qHashMulti(seed, card.url, card.name, card.itemCount, card.representative.has_value());
    return card.representative ? qHash(*card.representative, hash) : hash;
}
