#pragma once

#include "AppState.h"

#include <QPointer>

/// The state that an object follows.
class StatePointer : public QPointer<AppState> {
public:
    /// Follows another state from now on; the receiver hears nothing of the one before. False when it is the
    /// same.
    bool replace(AppState *state, const QObject *receiver) {
        if (data() == state) {
            return false;
        }
        if (data() != nullptr) {
            data()->disconnect(receiver);
        }
        QPointer::operator=(state);
        return true;
    }
};
