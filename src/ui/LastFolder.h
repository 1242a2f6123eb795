#pragma once

#include "FileURL.h"
#include "StatePointer.h"

#include <QFuture>
#include <QObject>
#include <QtQml/qqmlregistration.h>

/// Whether the folder that was open last can be opened again. Main thread; the file system is asked off it.
class LastFolder : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged REQUIRED)
    /// A last folder is remembered and, as of the last refresh, something exists at its path. False until the
    /// file system has answered.
    Q_PROPERTY(bool available READ isAvailable NOTIFY availableChanged)

public:
    using QObject::QObject;
    ~LastFolder() override;

    AppState *state() const { return m_state; }
    void setState(AppState *state);
    bool isAvailable() const { return m_available; }

    /// Asks again.
    Q_INVOKABLE void refresh();
    /// Opens the remembered folder, if there is one.
    Q_INVOKABLE void open();

Q_SIGNALS:
    void stateChanged();
    void availableChanged();

private:
    void setAvailable(bool available);

    StatePointer m_state;
    QFuture<bool> m_test;
    bool m_available = false;
};
