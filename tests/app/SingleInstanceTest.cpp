#include "SingleInstance.h"

#include "PrivateBus.h"

#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString name = u"org.example.Program"_s;
const QString path = u"/org/example/Program"_s;

} // namespace

class SingleInstanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { qunsetenv("XDG_ACTIVATION_TOKEN"); }

    void handsOver_data() {
        QTest::addColumn<QByteArray>("folder");
        QTest::addColumn<QByteArray>("uri");
        QTest::newRow("a folder") << "/a b/\xFF"_ba
                                  << "file:///a%20b/%FF"_ba;
        QTest::newRow("nothing but itself") << QByteArray() << QByteArray();
    }

    /// What a second start and the desktop ask of the first.
    void handsOver() {
        QFETCH(QByteArray, folder);
        QFETCH(QByteArray, uri);
        PrivateBus bus;
        SingleInstance first(bus.connect(), name, path);
        QSignalSpy runs(&first, &SingleInstance::running);
        first.start(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(runs.size(), 1, PrivateBus::patience);

        QSignalSpy opened(&first.application(), &DesktopApplication::openRequested);
        QSignalSpy activated(&first.application(), &DesktopApplication::activated);
        qputenv("XDG_ACTIVATION_TOKEN", "proof");
        SingleInstance second(bus.connect(), name, path);
        QSignalSpy secondRuns(&second, &SingleInstance::running);
        QSignalSpy handedOver(&second, &SingleInstance::handedOver);
        second.start(folder.isEmpty() ? std::nullopt : std::optional(FileURL::directory(folder)));
        QTRY_COMPARE_WITH_TIMEOUT(handedOver.size(), 1, PrivateBus::patience);
        QCOMPARE(secondRuns.size(), 0);
        QCOMPARE(activated[0][0].toByteArray(), "proof"_ba);
        QCOMPARE(opened.size(), uri.isEmpty() ? 0 : 1);
        QVERIFY(uri.isEmpty() || opened[0][0].value<QList<QByteArray>>() == QList{uri});

        QSignalSpy actions(&first.application(), &DesktopApplication::actionRequested);
        QDBusMessage call =
            QDBusMessage::createMethodCall(name, path, u"org.freedesktop.Application"_s, u"ActivateAction"_s);
        call << u"open-folder"_s << QVariantList() << QVariantMap();
        bus.connect().asyncCall(call);
        QTRY_COMPARE_WITH_TIMEOUT(actions.size(), 1, PrivateBus::patience);
        QCOMPARE(actions[0][0].toString(), u"open-folder"_s);
    }

    void runsAlone_data() {
        QTest::addColumn<bool>("connected");
        QTest::newRow("without a bus") << false;
        QTest::newRow("when another program holds the name") << true;
    }

    void runsAlone() {
        QFETCH(bool, connected);
        PrivateBus bus;
        QDBusConnection other = bus.connect();
        QVERIFY(other.registerService(name));
        SingleInstance instance(connected ? bus.connect() : QDBusConnection(u"nothing"_s), name, path);
        QSignalSpy runs(&instance, &SingleInstance::running);
        instance.start(FileURL::directory("/a"));
        QTRY_COMPARE_WITH_TIMEOUT(runs.size(), 1, PrivateBus::patience);
    }
};

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
