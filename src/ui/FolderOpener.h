#pragma once

#include "AppState.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

/// Opens the folders that other parts of the program announce on the default notification centre. Main
/// thread.
class FolderOpener : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged REQUIRED)

public:
    explicit FolderOpener(QObject *parent = nullptr);

    AppState *state() const { return m_state; }
    void setState(AppState *state);

Q_SIGNALS:
    void stateChanged();

private:
    QPointer<AppState> m_state;
};
