#pragma once

#include <QFuture>
#include <QString>
#include <QStringList>

/// A question put to the user before something irreversible.
struct Alert {
    QString messageText;
    QString informativeText;
    /// In display order; the first is the default (Return), the last one Escape's.
    QStringList buttons;
    /// The first button does something destructive and is drawn so.
    bool destructive = false;
};

/// Shows alerts. Main thread; nothing blocks.
class AlertPresenter {
public:
    virtual ~AlertPresenter() = default;
    /// The index of the chosen button, exactly once; cancelled when the window goes away first.
    virtual QFuture<int> present(const Alert &alert) = 0;
};
