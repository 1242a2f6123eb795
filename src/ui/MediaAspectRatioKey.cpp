#include "MediaAspectRatioKey.h"

#include "JustifiedGrid.h"

double MediaAspectRatioKey::valueOf(QObject *cell) {
    const auto *key =
        qobject_cast<MediaAspectRatioKey *>(qmlAttachedPropertiesObject<MediaAspectRatioKey>(cell, false));
    return key == nullptr ? JustifiedGridLayout::defaultAspectRatio : key->value();
}

void MediaAspectRatioKey::setValue(double value) {
    if (m_value == value) {
        return;
    }
    m_value = value;
    Q_EMIT valueChanged();
    const auto *cell = qobject_cast<QQuickItem *>(parent());
    if (auto *grid = cell == nullptr ? nullptr : qobject_cast<JustifiedGrid *>(cell->parentItem())) {
        grid->polish();
    }
}
