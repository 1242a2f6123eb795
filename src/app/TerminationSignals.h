#pragma once

#include <QObject>

class QSocketNotifier;

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal on the main thread, so that the program ends as if its
/// window had been closed. A second one ends it at once. One at a time; undone by the destructor.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

Q_SIGNALS:
    void requested();

private:
    QSocketNotifier *m_notifier = nullptr;
};
