#include "ScreenSaverInhibitor.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QTest>

#include <memory>

namespace {

const QString service = QStringLiteral("org.freedesktop.ScreenSaver");

} // namespace

/// Stands in for the desktop's screen saver; answers late when told to.
class StandIn : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    QStringList calls;
    bool answersLater = false;
    void answer() { bus.send(unanswered.createReply(cookie)); }

    const QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("desktop"));

public Q_SLOTS:
    uint Inhibit(const QString &application, const QString &reason) {
        calls << application + QLatin1String(": ") + reason;
        if (answersLater) {
            setDelayedReply(true);
            unanswered = message();
        }
        return cookie;
    }
    void UnInhibit(uint given) { calls << QString::number(given); }

private:
    static constexpr uint cookie = 42;
    QDBusMessage unanswered;
};

class ScreenSaverInhibitorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void asksOnceAndGivesBack();
    void givesBackAtItsEnd();
    void givesBackAnAnswerThatComesLate_data();
    void givesBackAnAnswerThatComesLate();
    void changesItsMindBeforeTheAnswer();
    void doesWithoutTheService();

private:
    std::unique_ptr<StandIn> m_desktop;
    QDBusConnection m_bus = QDBusConnection::sessionBus();
    const QStringList m_taken{QStringLiteral("Mosa: film")};
    const QStringList m_takenAndGiven{QStringLiteral("Mosa: film"), QStringLiteral("42")};
};

void ScreenSaverInhibitorTest::init() {
    if (!m_bus.isConnected()) {
        QSKIP("no session bus");
    }
    m_desktop = std::make_unique<StandIn>();
    QDBusConnection bus = m_desktop->bus;
    QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/ScreenSaver"), m_desktop.get(),
                               QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(service));
}

void ScreenSaverInhibitorTest::cleanup() {
    m_desktop.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("desktop"));
}

void ScreenSaverInhibitorTest::asksOnceAndGivesBack() {
    ScreenSaverInhibitor inhibitor(m_bus, QStringLiteral("film"));
    inhibitor.setActive(false);
    inhibitor.setActive(true);
    inhibitor.setActive(true);
    QTRY_COMPARE(m_desktop->calls, m_taken);
    QTest::qWait(50);
    inhibitor.setActive(false);
    QTRY_COMPARE(m_desktop->calls, m_takenAndGiven);
    QTest::qWait(50);
    QCOMPARE(m_desktop->calls, m_takenAndGiven);
}

void ScreenSaverInhibitorTest::givesBackAtItsEnd() {
    {
        ScreenSaverInhibitor inhibitor(m_bus, QStringLiteral("film"));
        inhibitor.setActive(true);
        QTRY_COMPARE(m_desktop->calls, m_taken);
        QTest::qWait(50);
    }
    QTRY_COMPARE(m_desktop->calls, m_takenAndGiven);
}

void ScreenSaverInhibitorTest::givesBackAnAnswerThatComesLate_data() {
    QTest::addColumn<bool>("objectGone");
    QTest::newRow("paused meanwhile") << false;
    QTest::newRow("closed meanwhile") << true;
}

void ScreenSaverInhibitorTest::givesBackAnAnswerThatComesLate() {
    QFETCH(bool, objectGone);
    m_desktop->answersLater = true;
    auto inhibitor = std::make_unique<ScreenSaverInhibitor>(m_bus, QStringLiteral("film"));
    inhibitor->setActive(true);
    QTRY_COMPARE(m_desktop->calls, m_taken);
    inhibitor->setActive(false);
    if (objectGone) {
        inhibitor.reset();
    }
    m_desktop->answer();
    QTRY_COMPARE(m_desktop->calls, m_takenAndGiven);
}

void ScreenSaverInhibitorTest::changesItsMindBeforeTheAnswer() {
    m_desktop->answersLater = true;
    ScreenSaverInhibitor inhibitor(m_bus, QStringLiteral("film"));
    inhibitor.setActive(true);
    inhibitor.setActive(false);
    inhibitor.setActive(true);
    QTRY_COMPARE(m_desktop->calls, m_taken);
    m_desktop->answer();
    QTest::qWait(50);
    QCOMPARE(m_desktop->calls, m_taken); // one request serves both
    inhibitor.setActive(false);
    QTRY_COMPARE(m_desktop->calls, m_takenAndGiven);
}

void ScreenSaverInhibitorTest::doesWithoutTheService() {
    QDBusConnection bus = m_desktop->bus;
    QVERIFY(bus.unregisterService(service));
    ScreenSaverInhibitor inhibitor(m_bus, QStringLiteral("film"));
    inhibitor.setActive(true);
    QTest::qWait(50);
    inhibitor.setActive(false);
    QTest::qWait(50);
    QCOMPARE(m_desktop->calls, QStringList());
}

QTEST_GUILESS_MAIN(ScreenSaverInhibitorTest)
#include "ScreenSaverInhibitorTest.moc"
