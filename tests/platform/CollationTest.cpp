#include "Collation.h"

#include <QLocale>
#include <QProcess>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// In order; every pair of neighbours is strictly so.
QStringList ordered() {
    return {u"_list"_s,
            u"1.jpg"_s,
            u"02.jpg"_s,
            u"3 a.jpg"_s,
            u"10.jpg"_s,
            u"100.jpg"_s,
            u"99999999999999999999999.jpg"_s,
            u"Äpfel"_s,
            u"B.jpg"_s,
            u"c.jpg"_s,
            u"clip 2.mp4"_s,
            u"Clip 10.mp4"_s,
            u"IMG 1"_s,
            u"img 2"_s,
            u"ırmak"_s,
            u"oben"_s,
            u"Öl"_s,
            u"z"_s,
            u"写真 2"_s,
            u"写真 10"_s};
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
        QTest::newRow("case") << u"Photo.JPG"_s << u"photo.jpg"_s;
        QTest::newRow("dotted I") << u"IMG.GIF"_s << u"img.gif"_s;
        QTest::newRow("leading zeros") << u"a 007"_s << u"a 7"_s;
        QTest::newRow("composition") << QString(QChar(0xE9)) << u"e"_s + QChar(0x301);
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
        const QString lone = u"caf"_s + QChar(0xDCE9);
        QVERIFY(collation.sortKey(lone) != collation.sortKey(u"caf"_s));
        QCOMPARE(collation.sortKey(lone), collation.sortKey(u"CAF"_s + QChar(0xDCE9)));
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
        process.start(QCoreApplication::applicationFilePath(), {u"order"_s, u"equalNames"_s, u"oddNames"_s});
        QVERIFY(process.waitForFinished(60'000));
        QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                 process.readAllStandardOutput().constData());
    }
};

QTEST_GUILESS_MAIN(CollationTest)
#include "CollationTest.moc"
