#include "ScreenSaverInhibitor.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// Stands in for the desktop's screen saver; answers late when told to.
class StandIn : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    StandIn() {
        bus.registerObject(u"/org/freedesktop/ScreenSaver"_s, this, QDBusConnection::ExportAllSlots);
        bus.registerService(u"org.freedesktop.ScreenSaver"_s);
    }
    ~StandIn() override { QDBusConnection::disconnectFromBus(bus.name()); }

    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"desktop"_s);
    QStringList calls;
    bool answersLater = false;
    void answer() { bus.send(unanswered.createReply(cookie)); }

public Q_SLOTS:
    uint Inhibit(const QString &application, const QString &reason) {
        calls << application + u": "_s + reason;
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

    std::unique_ptr<StandIn> m_desktop;
    std::unique_ptr<ScreenSaverInhibitor> m_inhibitor;
    const QStringList m_taken{u"Mosa: film"_s};
    const QStringList m_takenAndGiven{u"Mosa: film"_s, u"42"_s};

private Q_SLOTS:
    void init() {
        if (!QDBusConnection::sessionBus().isConnected()) {
            QSKIP("no session bus");
        }
        m_desktop = std::make_unique<StandIn>();
        m_inhibitor = std::make_unique<ScreenSaverInhibitor>(QDBusConnection::sessionBus(), u"film"_s);
    }

    void cleanup() {
        m_inhibitor.reset();
        m_desktop.reset();
    }

    void givesBackWhatItTook_data() {
        QTest::addColumn<bool>("answersLater");
        QTest::addColumn<bool>("objectGone");
        QTest::newRow("paused") << false << false;
        QTest::newRow("closed") << false << true;
        QTest::newRow("paused before the answer") << true << false;
        QTest::newRow("closed before the answer") << true << true;
    }

    void givesBackWhatItTook() {
        QFETCH(bool, answersLater);
        QFETCH(bool, objectGone);
        m_desktop->answersLater = answersLater;
        m_inhibitor->setActive(false);
        m_inhibitor->setActive(true);
        m_inhibitor->setActive(true);
        QTRY_COMPARE(m_desktop->calls, m_taken);
        QTest::qWait(50);
        objectGone ? m_inhibitor.reset() : m_inhibitor->setActive(false);
        if (answersLater) {
            m_desktop->answer();
        }
        QTRY_COMPARE(m_desktop->calls, m_takenAndGiven);
        QTest::qWait(50);
        QCOMPARE(m_desktop->calls, m_takenAndGiven);
    }

    void changesItsMindBeforeTheAnswer() {
        m_desktop->answersLater = true;
        m_inhibitor->setActive(true);
        m_inhibitor->setActive(false);
        m_inhibitor->setActive(true);
        QTRY_COMPARE(m_desktop->calls, m_taken);
        m_desktop->answer();
        QTest::qWait(50);
        QCOMPARE(m_desktop->calls, m_taken); // one request serves both
        m_inhibitor->setActive(false);
        QTRY_COMPARE(m_desktop->calls, m_takenAndGiven);
    }

    void doesWithoutTheService() {
        QVERIFY(m_desktop->bus.unregisterService(u"org.freedesktop.ScreenSaver"_s));
        m_inhibitor->setActive(true);
        QTest::qWait(50);
        m_inhibitor->setActive(false);
        QTest::qWait(50);
        QCOMPARE(m_desktop->calls, QStringList());
    }
};

QTEST_GUILESS_MAIN(ScreenSaverInhibitorTest)
#include "ScreenSaverInhibitorTest.moc"
