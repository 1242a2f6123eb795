#include "SingleInstance.h"

#include "PrivateBus.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>

namespace {

constexpr int limit = 30000;
const QString name = QStringLiteral("org.example.Program");
const QString path = QStringLiteral("/org/example/Program");

} // namespace

class SingleInstanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (!PrivateBus::isPossible()) {
            QSKIP("no message bus is installed");
        }
    }

    void cleanup() { qunsetenv("XDG_ACTIVATION_TOKEN"); }

    void handsOver_data() {
        QTest::addColumn<QByteArray>("folder");
        QTest::addColumn<QByteArray>("uri");
        QTest::newRow("a folder") << QByteArray("/a b/\xFF") << QByteArray("file:///a%20b/%FF");
        QTest::newRow("nothing but itself") << QByteArray() << QByteArray();
    }

    void handsOver() {
        QFETCH(QByteArray, folder);
        QFETCH(QByteArray, uri);
        PrivateBus bus;
        SingleInstance first(bus.connect(), name, path);
        QSignalSpy firstRuns(&first, &SingleInstance::running);
        first.start(std::nullopt);
        QCOMPARE(firstRuns.size(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(firstRuns.size(), 1, limit);

        QSignalSpy opened(&first.application(), &DesktopApplication::openRequested);
        QSignalSpy activated(&first.application(), &DesktopApplication::activated);
        qputenv("XDG_ACTIVATION_TOKEN", "proof");
        SingleInstance second(bus.connect(), name, path);
        QSignalSpy secondRuns(&second, &SingleInstance::running);
        QSignalSpy handedOver(&second, &SingleInstance::handedOver);
        second.start(folder.isEmpty() ? std::nullopt : std::optional(FileURL::directory(folder)));
        QTRY_COMPARE_WITH_TIMEOUT(handedOver.size(), 1, limit);
        QCOMPARE(secondRuns.size(), 0);
        QCOMPARE(activated.size(), 1);
        QCOMPARE(activated[0][0].toByteArray(), QByteArray("proof"));
        QCOMPARE(opened.size(), uri.isEmpty() ? 0 : 1);
        if (!uri.isEmpty()) {
            QCOMPARE(opened[0][0].value<QList<QByteArray>>(), QList<QByteArray>{uri});
        }
    }

    void runsWithoutBus() {
        SingleInstance instance(QDBusConnection(QStringLiteral("nothing")), name, path);
        QSignalSpy runs(&instance, &SingleInstance::running);
        instance.start(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(runs.size(), 1, limit);
    }

    void runsWhenTheNameIsHeldByAnother() {
        PrivateBus bus;
        QDBusConnection other = bus.connect();
        QVERIFY(other.registerService(name));
        SingleInstance instance(bus.connect(), name, path);
        QSignalSpy runs(&instance, &SingleInstance::running);
        instance.start(FileURL::directory("/a"));
        QTRY_COMPARE_WITH_TIMEOUT(runs.size(), 1, limit);
    }

    void runsWhenTheBusIsStuck() {
        PrivateBus bus;
        const QDBusConnection connection = bus.connect();
        SingleInstance instance(connection, name, path);
        QSignalSpy runs(&instance, &SingleInstance::running);
        ::kill(pid_t(bus.processId()), SIGSTOP);
        instance.start(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(runs.size(), 1, limit);
        ::kill(pid_t(bus.processId()), SIGCONT);
    }

    void passesActionsOn() {
        PrivateBus bus;
        SingleInstance first(bus.connect(), name, path);
        QSignalSpy runs(&first, &SingleInstance::running);
        first.start(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(runs.size(), 1, limit);
        QSignalSpy actions(&first.application(), &DesktopApplication::actionRequested);
        QDBusMessage call = QDBusMessage::createMethodCall(
            name, path, QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
        call << QStringLiteral("open-folder") << QVariantList() << QVariantMap();
        bus.connect().asyncCall(call);
        QTRY_COMPARE_WITH_TIMEOUT(actions.size(), 1, limit);
        QCOMPARE(actions[0][0].toString(), QStringLiteral("open-folder"));
    }
};

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
