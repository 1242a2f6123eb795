#include "MosaTimestamp.h"

#include <QTest>

#include <limits>

class MosaTimestampTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void formats_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0.0 << "0:00";
        QTest::newRow("truncated") << 59.99 << "0:59";
        QTest::newRow("a minute") << 60.0 << "1:00";
        QTest::newRow("an hour") << 3600.0 << "1:00:00";
        QTest::newRow("hours without bound") << 360'000.0 << "100:00:00";
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << "0:00";
        QTest::newRow("beyond any integer") << 1e300 << "2555555555555555:33:20";
    }

    void formats() {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        QCOMPARE(mosaTimestamp(seconds), text);
    }
};

QTEST_GUILESS_MAIN(MosaTimestampTest)
#include "MosaTimestampTest.moc"
