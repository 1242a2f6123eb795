#include "NumberedName.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class NumberedNameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbers_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<qint64>("n");
        QTest::addColumn<QByteArray>("expected");

        QTest::newRow("first") << "clip.mp4"_ba << qint64(1) << "clip.mp4"_ba;
        QTest::newRow("second") << "clip.mp4"_ba << qint64(2) << "clip 2.mp4"_ba;
        QTest::newRow("no extension") << "notes"_ba << qint64(3) << "notes 3"_ba;
        QTest::newRow("two dots") << "archive.tar.gz"_ba << qint64(2) << "archive.tar 2.gz"_ba;
        QTest::newRow("leading dot") << ".mp4"_ba << qint64(2) << ".mp4 2"_ba;
        QTest::newRow("last dot") << "clip."_ba << qint64(2) << "clip. 2"_ba;
        QTest::newRow("numbered already") << "clip 2.mp4"_ba << qint64(2) << "clip 2 2.mp4"_ba;
        QTest::newRow("not UTF-8") << "\xff\xfe.mp4"_ba << qint64(10) << "\xff\xfe 10.mp4"_ba;

        const QByteArray longest(251, 'a');
        QTest::newRow("longest, first") << longest + ".mp4" << qint64(1) << longest + ".mp4";
        QTest::newRow("longest, numbered") << longest + ".mp4" << qint64(12) << longest.left(248) + " 12.mp4";
        // 125 characters of two bytes; three bytes go, so two characters must.
        const QByteArray accents = "\xc3\xa9"_ba.repeated(125);
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
        const QByteArray name = "\xf0\x9d\x84\x9e"_ba.repeated(62) + ".mp4";
        QCOMPARE(numberedName(name, 1, 245), name.left(240) + ".mp4");
    }
};

QTEST_GUILESS_MAIN(NumberedNameTest)
#include "NumberedNameTest.moc"
