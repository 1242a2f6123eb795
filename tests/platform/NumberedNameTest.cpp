#include "NumberedName.h"

#include <QtTest>

class NumberedNameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbers_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<qint64>("n");
        QTest::addColumn<QByteArray>("expected");

        QTest::newRow("first") << QByteArray("clip.mp4") << qint64(1) << QByteArray("clip.mp4");
        QTest::newRow("second") << QByteArray("clip.mp4") << qint64(2) << QByteArray("clip 2.mp4");
        QTest::newRow("no extension") << QByteArray("notes") << qint64(3) << QByteArray("notes 3");
        QTest::newRow("two dots") << QByteArray("archive.tar.gz") << qint64(2)
                                  << QByteArray("archive.tar 2.gz");
        QTest::newRow("leading dot") << QByteArray(".mp4") << qint64(2) << QByteArray(".mp4 2");
        QTest::newRow("last dot") << QByteArray("clip.") << qint64(2) << QByteArray("clip. 2");
        QTest::newRow("numbered already")
            << QByteArray("clip 2.mp4") << qint64(2) << QByteArray("clip 2 2.mp4");
        QTest::newRow("not UTF-8") << QByteArray("\xff\xfe.mp4") << qint64(10)
                                   << QByteArray("\xff\xfe 10.mp4");

        const QByteArray longest(251, 'a');
        QTest::newRow("longest, first") << longest + ".mp4" << qint64(1) << longest + ".mp4";
        QTest::newRow("longest, numbered") << longest + ".mp4" << qint64(12) << longest.left(248) + " 12.mp4";
        // 125 characters of two bytes; three bytes go, so two characters must.
        const QByteArray accents = QByteArray("\xc3\xa9").repeated(125);
        QTest::newRow("between characters")
            << 'a' + accents + ".mp4" << qint64(2) << 'a' + accents.left(248) + " 2.mp4";
        QTest::newRow("no character to keep whole")
            << QByteArray(251, '\x80') + ".mp4" << qint64(2) << QByteArray(249, '\x80') + " 2.mp4";
        const QByteArray hugeExtension = "a." + QByteArray(253, 'x');
        QTest::newRow("extension leaves no room")
            << hugeExtension << qint64(2) << hugeExtension.left(253) + " 2";
    }

    void numbers() {
        QFETCH(QByteArray, name);
        QFETCH(qint64, n);
        QTEST(numberedName(name, n), "expected");
        QVERIFY(numberedName(name, n).size() <= longestFileName);
    }

    void keepsToTheLimit() {
        // Clefs of four bytes: 245 - 4 leaves 241, and 60 whole ones fit in.
        const QByteArray name = QByteArray("\xf0\x9d\x84\x9e").repeated(62) + ".mp4";
        QCOMPARE(numberedName(name, 1, 245), name.left(240) + ".mp4");
    }
};

QTEST_GUILESS_MAIN(NumberedNameTest)
#include "NumberedNameTest.moc"
