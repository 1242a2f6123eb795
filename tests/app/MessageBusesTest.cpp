#include "MessageBuses.h"

#include "PrivateBus.h"

#include <QElapsedTimer>
#include <QTest>

#include <csignal>

using namespace std::chrono_literals;

namespace {

constexpr const char *session = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char *systemBus = "DBUS_SYSTEM_BUS_ADDRESS";
const QByteArray avoided = "disabled:";

} // namespace

class MessageBusesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (!PrivateBus::isPossible()) {
            QSKIP("no message bus is installed");
        }
    }

    void leavesAloneWhatIsNotStuck_data() {
        QTest::addColumn<QByteArray>("address");
        QTest::newRow("no socket") << QByteArray("unix:path=/nonexistent/bus");
        QTest::newRow("abstract, nobody there") << QByteArray("unix:abstract=/mosa-test-nobody");
        QTest::newRow("another transport") << QByteArray("tcp:host=localhost,port=1");
        QTest::newRow("nonsense") << QByteArray("x");
    }

    void leavesAloneWhatIsNotStuck() {
        QFETCH(QByteArray, address);
        qputenv(session, address);
        qputenv(systemBus, address);
        MessageBuses::avoidStuckOnes(10s);
        QCOMPARE(qgetenv(session), address);
        QCOMPARE(qgetenv(systemBus), address);
    }

    void avoidsOnlyStuckDaemons() {
        const PrivateBus stuck;
        const PrivateBus healthy;
        const QByteArray healthyAddress = healthy.address().toUtf8();
        qputenv(session, healthyAddress);
        qputenv(systemBus, stuck.address().toUtf8());
        ::kill(pid_t(stuck.processId()), SIGSTOP);
        // Long enough for the healthy one on a busy machine.
        MessageBuses::avoidStuckOnes(2s);
        ::kill(pid_t(stuck.processId()), SIGCONT);
        QCOMPARE(qgetenv(session), healthyAddress);
        QCOMPARE(qgetenv(systemBus), avoided);
    }
};

QTEST_GUILESS_MAIN(MessageBusesTest)
#include "MessageBusesTest.moc"
