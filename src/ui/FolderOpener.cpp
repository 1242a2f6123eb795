#include "FolderOpener.h"

#include "NotificationCentre.h"
#include "NotificationNames.h"

FolderOpener::FolderOpener(QObject *parent) : QObject(parent) {
    connect(&NotificationCentre::defaultCentre(), &NotificationCentre::posted, this,
            [this](const QString &name, const QVariant &object) {
                // Anything but a location is none of ours.
                if (name == NotificationNames::mosaOpenFolder && m_state &&
                    object.metaType() == QMetaType::fromType<FileURL>()) {
                    m_state->openFolder(object.value<FileURL>(), true);
                }
            });
}

void FolderOpener::setState(AppState *state) {
    if (m_state == state) {
        return;
    }
    m_state = state;
    Q_EMIT stateChanged();
}
