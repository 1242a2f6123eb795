#pragma once

#include "AlertPresenter.h"

#include <QObject>
#include <QPromise>
#include <QQueue>
#include <QtQml/qqmlregistration.h>

/// Shows alerts as sheets within the window, one at a time in the order of asking. AlertSheet.qml draws the
/// one that is up. Main thread. The end of this object cancels the questions that are still open.
class SheetAlertPresenter : public QObject, public AlertPresenter {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    /// An alert is up: the window's keys belong to it.
    Q_PROPERTY(bool active READ active NOTIFY changed)
    Q_PROPERTY(QString messageText READ messageText NOTIFY changed)
    Q_PROPERTY(QString informativeText READ informativeText NOTIFY changed)
    Q_PROPERTY(QStringList buttons READ buttons NOTIFY changed)
    Q_PROPERTY(bool destructive READ destructive NOTIFY changed)

public:
    using QObject::QObject;

    QFuture<int> present(const Alert &alert) override;

    bool active() const { return !m_questions.isEmpty(); }
    QString messageText() const { return active() ? m_questions.head().alert.messageText : QString(); }
    QString informativeText() const {
        return active() ? m_questions.head().alert.informativeText : QString();
    }
    QStringList buttons() const { return active() ? m_questions.head().alert.buttons : QStringList(); }
    bool destructive() const { return active() && m_questions.head().alert.destructive; }

    /// Answers the alert that is up with the index of one of its buttons.
    Q_INVOKABLE void choose(int button);

Q_SIGNALS:
    void changed();

private:
    struct Question {
        Alert alert;
        std::shared_ptr<QPromise<int>> promise;
    };

    QQueue<Question> m_questions;
};
