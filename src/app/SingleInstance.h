#pragma once

#include "DesktopApplication.h"
#include "FileURL.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QTimer>

#include <optional>

/// One window per user: the first start owns the program's name on the session bus, a later one hands over
/// what it was asked to open and ends. Asynchronous; a bus that is absent or does not answer means to run.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    SingleInstance(QDBusConnection bus, QString name, QString path, QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Ends in exactly one of the two signals below, always in a later turn of the event loop.
    void start(const std::optional<FileURL> &folder);

    DesktopApplication &application() { return m_application; }

Q_SIGNALS:
    /// This process is to open the window.
    void running();
    /// The process that runs already has taken over.
    void handedOver();

private:
    void requestName();
    void handOver();
    void decide(bool run);
    void await(const QDBusPendingCall &call, int milliseconds,
               void (SingleInstance::*next)(const QDBusMessage &));
    void nameAnswered(const QDBusMessage &reply);
    void handOverAnswered(const QDBusMessage &reply);

    QDBusConnection m_bus;
    QString m_name;
    QString m_path;
    DesktopApplication m_application;
    std::optional<FileURL> m_folder;
    QTimer m_limit;
    bool m_decided = false;
};
