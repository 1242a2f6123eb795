#include "CommandLine.h"

#include <QTest>

using Action = CommandLine::Action;
using Arguments = QList<QByteArray>;

class CommandLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void parses_data() {
        QTest::addColumn<Arguments>("arguments");
        QTest::addColumn<Action>("action");
        QTest::addColumn<QByteArray>("folder");
        QTest::newRow("relative path") << Arguments{"a b"} << Action::Run << QByteArray("/home/me/a b");
        QTest::newRow("address") << Arguments{"file:///a%20b/%FF"} << Action::Run << QByteArray("/a b/\xFF");
        QTest::newRow("the first of several") << Arguments{"/a", "/b"} << Action::Run << QByteArray("/a");
        QTest::newRow("help wins") << Arguments{"/a", "--help"} << Action::ShowHelp << QByteArray();
        QTest::newRow("unknown") << Arguments{"--versoin"} << Action::Refuse << QByteArray();
        QTest::newRow("a dash after the end of options")
            << Arguments{"--", "--help"} << Action::Run << QByteArray("/home/me/--help");
    }

    void parses() {
        QFETCH(Arguments, arguments);
        QFETCH(QByteArray, folder);
        const CommandLine commandLine = CommandLine::parse(arguments, "/home/me");
        QTEST(commandLine.action, "action");
        QCOMPARE(commandLine.folder ? commandLine.folder->nativePath() : QByteArray(), folder);
    }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "CommandLineTest.moc"
