#include "WindowFrame.h"

#include <QTest>

namespace {

using Screen = WindowFrame::Screen;

constexpr QSize minimum(920, 620);
const Screen laptop{QStringLiteral("eDP-1"), QRect(0, 0, 1920, 1040)};
const Screen monitor{QStringLiteral("HDMI 1"), QRect(1920, 0, 2560, 1400)};

} // namespace

class WindowFrameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void refusesOtherTexts_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << "";
        QTest::newRow("beyond every desktop") << "10 20 2147483647 900 0 0 1920 1040 0 eDP-1";
    }

    void refusesOtherTexts() {
        QFETCH(QString, text);
        QVERIFY(!WindowFrame::fromText(text));
    }

    void comesBack_data() {
        QTest::addColumn<WindowFrame>("kept");
        QTest::addColumn<QList<Screen>>("screens");
        QTest::addColumn<QRect>("frame");
        const QList<Screen> both{laptop, monitor};
        const QList<Screen> alone{laptop};
        const QRect usual(300, 80, 1440, 900);
        QTest::newRow("where it was") << WindowFrame{usual, laptop, false} << both << usual;
        QTest::newRow("half beyond the right edge stays")
            << WindowFrame{QRect(1500, 80, 1440, 900), laptop, false} << alone << QRect(1500, 80, 1440, 900);
        QTest::newRow("monitor gone")
            << WindowFrame{QRect(2400, 200, 1440, 900), monitor, false} << alone << QRect(240, 70, 1440, 900);
        QTest::newRow("top strip above the screen")
            << WindowFrame{QRect(300, -500, 1440, 900), laptop, false} << alone << QRect(300, 0, 1440, 900);
        QTest::newRow("a sliver in sight")
            << WindowFrame{QRect(1900, 80, 1440, 900), laptop, false} << alone << QRect(480, 80, 1440, 900);
        QTest::newRow("larger than the screen")
            << WindowFrame{QRect(0, 0, 2500, 1300), laptop, false} << alone << QRect(0, 0, 1920, 1040);
        QTest::newRow("no screen at all") << WindowFrame{usual, laptop, false} << QList<Screen>() << usual;
    }

    void comesBack() {
        QFETCH(WindowFrame, kept);
        QFETCH(QList<Screen>, screens);
        QCOMPARE(WindowFrame::fromText(kept.text()), std::optional(kept));
        QTEST(kept.placed(screens, minimum), "frame");
    }
};

QTEST_GUILESS_MAIN(WindowFrameTest)
#include "WindowFrameTest.moc"
