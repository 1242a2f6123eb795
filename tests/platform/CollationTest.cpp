#include "Collation.h"

#include <QLocale>
#include <QProcess>
#include <QTest>

#include <algorithm>

namespace {

/// In order; every pair of neighbours is strictly so.
QStringList ordered() {
    return {QStringLiteral("_list"),
            QStringLiteral("1.jpg"),
            QStringLiteral("02.jpg"),
            QStringLiteral("3 a.jpg"),
            QStringLiteral("10.jpg"),
            QStringLiteral("100.jpg"),
            QStringLiteral("99999999999999999999999.jpg"),
            QStringLiteral("Äpfel"),
            QStringLiteral("B.jpg"),
            QStringLiteral("c.jpg"),
            QStringLiteral("clip 2.mp4"),
            QStringLiteral("Clip 10.mp4"),
            QStringLiteral("IMG 1"),
            QStringLiteral("img 2"),
            QStringLiteral("ırmak"),
            QStringLiteral("oben"),
            QStringLiteral("Öl"),
            QStringLiteral("z"),
            QStringLiteral("写真 2"),
            QStringLiteral("写真 10")};
}

} // namespace

class CollationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void order() {
        const Collation collation;
        const QStringList names = ordered();
        for (qsizetype i = 1; i < names.size(); ++i) {
            QVERIFY2(collation.sortKey(names[i - 1]) < collation.sortKey(names[i]), qPrintable(names[i]));
        }
    }

    void equalNames_data() {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::newRow("case") << QStringLiteral("Photo.JPG") << QStringLiteral("photo.jpg");
        QTest::newRow("dotted I") << QStringLiteral("IMG.GIF") << QStringLiteral("img.gif");
        QTest::newRow("leading zeros") << QStringLiteral("a 007") << QStringLiteral("a 7");
        QTest::newRow("composition") << QString(QChar(0xE9)) << QStringLiteral("e") + QChar(0x301);
        QTest::newRow("empty") << QString() << QString(QLatin1String(""));
    }

    void equalNames() {
        QFETCH(QString, a);
        QFETCH(QString, b);
        const Collation collation;
        QCOMPARE(collation.sortKey(a), collation.sortKey(b));
    }

    void oddNames() {
        const Collation collation;
        const QString lone = QStringLiteral("caf") + QChar(0xDCE9);
        QVERIFY(collation.sortKey(lone) != collation.sortKey(QStringLiteral("caf")));
        QCOMPARE(collation.sortKey(lone), collation.sortKey(QStringLiteral("CAF") + QChar(0xDCE9)));
        const QString longName(5000, u'x');
        QVERIFY(collation.sortKey(longName) < collation.sortKey(longName + u'y'));
        QVERIFY(collation.sortKey(longName) > collation.sortKey(longName.chopped(1)));
    }

    /// The same test in processes that are set to other languages.
    void independentOfLanguage_data() {
        QTest::addColumn<QString>("language");
        for (const char *language : {"C", "de_DE.UTF-8", "tr_TR.UTF-8", "sv_SE.UTF-8", "ja_JP.UTF-8"}) {
            QTest::newRow(language) << QString::fromLatin1(language);
        }
    }

    void independentOfLanguage() {
        QFETCH(QString, language);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"LANG", "LC_ALL", "LC_COLLATE", "LANGUAGE"}) {
            environment.insert(QString::fromLatin1(name), language);
        }
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("order"), QStringLiteral("equalNames"), QStringLiteral("oddNames")});
        QVERIFY(process.waitForFinished(60'000));
        QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                 process.readAllStandardOutput().constData());
    }
};

QTEST_GUILESS_MAIN(CollationTest)
#include "CollationTest.moc"
