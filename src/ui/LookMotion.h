#pragma once

#include "ReducedMotion.h"

#include <QtQml/qqmlregistration.h>

/// The desktop's wish for less movement, for the look.
class LookMotion : public ReducedMotion {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit LookMotion(QObject *parent = nullptr) : ReducedMotion(QDBusConnection::sessionBus(), parent) {}
};
