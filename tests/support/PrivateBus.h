#pragma once

#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// A message bus of the test's own, which starts no services. Connections made through it are closed with it.
class PrivateBus {
public:
    /// Milliseconds that an answer may take on a busy machine.
    static constexpr int patience = 30'000;

    PrivateBus() {
        QFile configuration(m_directory.filePath(QStringLiteral("bus.conf")));
        if (!configuration.open(QIODevice::WriteOnly)) {
            return;
        }
        configuration.write(
            "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN\" "
            "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\"><busconfig>"
            "<type>session</type><listen>unix:path=" +
            m_directory.filePath(QStringLiteral("bus")).toUtf8() +
            "</listen><policy context=\"default\"><allow send_destination=\"*\" "
            "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/>"
            "<allow user=\"*\"/></policy></busconfig>");
        configuration.close();
        m_daemon.start(program(), {QStringLiteral("--config-file=") + configuration.fileName(),
                                   QStringLiteral("--print-address=1"), QStringLiteral("--nofork")});
        if (m_daemon.waitForReadyRead(patience)) {
            m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        }
    }

    ~PrivateBus() {
        for (const QString &name : m_names) {
            QDBusConnection::disconnectFromBus(name);
        }
        m_daemon.terminate();
        m_daemon.waitForFinished(patience);
    }
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    bool isRunning() const { return !m_address.isEmpty(); }
    qint64 processId() const { return m_daemon.processId(); }

    QDBusConnection connect() {
        m_names.append(QStringLiteral("private-bus-%1-%2").arg(quintptr(this)).arg(m_names.size()));
        return QDBusConnection::connectToBus(m_address, m_names.constLast());
    }

private:
    static QString program() { return QStringLiteral("dbus-daemon"); }

    QTemporaryDir m_directory;
    QProcess m_daemon;
    QString m_address;
    QStringList m_names;
};

#define REQUIRE_BUS(bus)                                                                                     \
    if (!(bus).isRunning())                                                                                  \
    QSKIP("no message bus is installed")
