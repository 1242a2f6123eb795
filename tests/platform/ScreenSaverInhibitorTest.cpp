#include "ScreenSaverInhibitor.h"

#include "StandInService.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class ScreenSaverInhibitorTest : public QObject {
    Q_OBJECT

    static constexpr uint cookie = 42;

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<StandInService> m_desktop;
    std::unique_ptr<ScreenSaverInhibitor> m_inhibitor;
    bool m_answersLater = false;
    const QStringList m_taken{u"Inhibit"_s};
    const QStringList m_takenAndGiven{u"Inhibit"_s, u"UnInhibit"_s};

    void answer() { m_desktop->send(m_desktop->calls[0].createReply(cookie)); }

private Q_SLOTS:
    void init() {
        m_bus = std::make_unique<PrivateBus>();
        m_answersLater = false;
        m_desktop = std::make_unique<StandInService>(
            m_bus->connect(), u"org.freedesktop.ScreenSaver"_s, [this](const QDBusMessage &call) {
                return m_answersLater ? QDBusMessage() : call.createReply(cookie);
            });
        m_inhibitor = std::make_unique<ScreenSaverInhibitor>(m_bus->connect(), u"film"_s);
    }

    void cleanup() {
        m_inhibitor.reset();
        m_desktop.reset();
        m_bus.reset();
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
        QFETCH(bool, objectGone);
        QFETCH(bool, answersLater);
        m_answersLater = answersLater;
        m_inhibitor->setActive(false);
        m_inhibitor->setActive(true);
        m_inhibitor->setActive(true);
        QTRY_COMPARE(m_desktop->members(), m_taken);
        QTest::qWait(50);
        objectGone ? m_inhibitor.reset() : m_inhibitor->setActive(false);
        if (answersLater) {
            answer();
        }
        QTRY_COMPARE(m_desktop->members(), m_takenAndGiven);
        QCOMPARE(m_desktop->calls[1].arguments(), QVariantList{cookie});
        QTest::qWait(50);
        QCOMPARE(m_desktop->members(), m_takenAndGiven);
    }

    void changesItsMindBeforeTheAnswer() {
        m_answersLater = true;
        m_inhibitor->setActive(true);
        m_inhibitor->setActive(false);
        m_inhibitor->setActive(true);
        QTRY_COMPARE(m_desktop->members(), m_taken);
        answer();
        QTest::qWait(50);
        QCOMPARE(m_desktop->members(), m_taken); // one request serves both
        m_inhibitor->setActive(false);
        QTRY_COMPARE(m_desktop->members(), m_takenAndGiven);
    }
};

QTEST_GUILESS_MAIN(ScreenSaverInhibitorTest)
#include "ScreenSaverInhibitorTest.moc"
