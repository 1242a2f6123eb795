#include "Collation.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

class CollationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void order() {
        const QString lone = u"caf"_s + QChar(0xDCE9);
        const QString longName(5000, u'x');
        // Every pair of neighbours is strictly in order.
        const QStringList names{u"_list"_s,
                                u"1.jpg"_s,
                                u"02.jpg"_s,
                                u"3 a.jpg"_s,
                                u"10.jpg"_s,
                                u"100.jpg"_s,
                                u"99999999999999999999999.jpg"_s,
                                u"Äpfel"_s,
                                u"B.jpg"_s,
                                u"c.jpg"_s,
                                u"caf"_s,
                                lone,
                                u"clip 2.mp4"_s,
                                u"Clip 10.mp4"_s,
                                u"IMG 1"_s,
                                u"img 2"_s,
                                u"ırmak"_s,
                                u"oben"_s,
                                u"Öl"_s,
                                longName,
                                longName + u'y',
                                u"z"_s,
                                u"写真 2"_s,
                                u"写真 10"_s};
        const Collation collation;
        for (qsizetype i = 1; i < names.size(); ++i) {
            QVERIFY2(collation.sortKey(names[i - 1]) < collation.sortKey(names[i]), qPrintable(names[i]));
        }
        QCOMPARE(collation.sortKey(lone), collation.sortKey(u"CAF"_s + QChar(0xDCE9)));
    }

    void equalNames_data() {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::newRow("case") << "Photo.JPG"
                              << "photo.jpg";
        QTest::newRow("dotted I") << "IMG.GIF"
                                  << "img.gif";
        QTest::newRow("leading zeros") << "a 007"
                                       << "a 7";
        QTest::newRow("composition") << QString(QChar(0xE9)) << u"e"_s + QChar(0x301);
        QTest::newRow("empty") << QString() << u""_s;
    }

    void equalNames() {
        QFETCH(QString, a);
        QFETCH(QString, b);
        const Collation collation;
        QCOMPARE(collation.sortKey(a), collation.sortKey(b));
    }

    /// The same test in processes that are set to other languages.
    void independentOfLanguage() {
        for (const QString &language : {u"C"_s, u"de_DE.UTF-8"_s, u"tr_TR.UTF-8"_s, u"ja_JP.UTF-8"_s}) {
            QProcess process;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            for (const char *name : {"LANG", "LC_ALL", "LC_COLLATE", "LANGUAGE"}) {
                environment.insert(QString::fromLatin1(name), language);
            }
            process.setProcessEnvironment(environment);
            process.start(QCoreApplication::applicationFilePath(), {u"order"_s, u"equalNames"_s});
            QVERIFY(process.waitForFinished(60'000));
            QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                     process.readAllStandardOutput().constData());
        }
    }
};

QTEST_GUILESS_MAIN(CollationTest)
#include "CollationTest.moc"
