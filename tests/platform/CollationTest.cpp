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
        QStringList names =
            u"_list|1.jpg|02.jpg|3 a.jpg|10.jpg|100.jpg|99999999999999999999999.jpg|Äpfel|B.jpg|c.jpg|caf|"
            u"clip 2.mp4|Clip 10.mp4|IMG 1|img 2|ırmak|oben|Öl|z|写真 2|写真 10"_s.split(u'|');
        names.insert(names.indexOf(u"clip 2.mp4"_s), lone);
        names.insert(names.indexOf(u"z"_s), longName);
        names.insert(names.indexOf(u"z"_s), longName + u'y');
        const Collation collation;
        for (qsizetype i = 1; i < names.size(); ++i) {
            QVERIFY2(collation.sortKey(names[i - 1]) < collation.sortKey(names[i]), qPrintable(names[i]));
        }
        QCOMPARE(collation.sortKey(lone), collation.sortKey(u"CAF"_s + QChar(0xDCE9)));
    }

    void equalNames() {
        const std::pair<QString, QString> pairs[] = {{u"Photo.JPG"_s, u"photo.jpg"_s},
                                                     {u"IMG.GIF"_s, u"img.gif"_s},
                                                     {u"a 007"_s, u"a 7"_s},
                                                     {u"\u00E9"_s, u"e\u0301"_s}};
        const Collation collation;
        for (const auto &[a, b] : pairs) {
            QVERIFY2(collation.sortKey(a) == collation.sortKey(b), qPrintable(a));
        }
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
