#include "JustifiedGridLayout.h"

#include <QTest>

#include <cmath>

using Ratios = std::vector<double>;
using Frames = std::vector<QRectF>;

class JustifiedGridLayoutTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void places_data() {
        QTest::addColumn<double>("width");
        QTest::addColumn<Ratios>("ratios");
        QTest::addColumn<Frames>("frames");

        QTest::newRow("no cells") << 1000.0 << Ratios{} << Frames{};
        QTest::newRow("no width") << 0.0 << Ratios{1} << Frames{};
        QTest::newRow("unfilled row is centred") << 1000.0 << Ratios{1} << Frames{{377.5, 0, 245, 245}};
        const double h = 994.0 / 7;
        QTest::newRow("full row spans the width")
            << 1000.0 << Ratios{5, 5} << Frames{{0, 0, 3.5 * h, h}, {3.5 * h + 6, 0, 3.5 * h, h}};
        QTest::newRow("rows below each other")
            << 490.0 << Ratios{2, 1} << Frames{{0, 0, 490, 245}, {122.5, 251, 245, 245}};
        // 20 / 0.35 = 57 points is raised to 125; 60 / 0.35 = 171 points is not.
        QTest::newRow("raised row overruns on the right")
            << 20.0 << Ratios{0.1} << Frames{{0, 0, 43.75, 125}};
        QTest::newRow("ratio clamped in the cell") << 60.0 << Ratios{0.1} << Frames{{0, 0, 60, 60 / 0.35}};
    }

    void places() {
        QFETCH(double, width);
        QFETCH(Ratios, ratios);
        QFETCH(Frames, frames);
        const JustifiedGridLayout layout{.spacing = 6, .targetHeight = 245};
        const Frames placed = layout.frames(ratios, width);
        QCOMPARE(placed.size(), frames.size());
        for (size_t i = 0; i < placed.size(); ++i) {
            QVERIFY(std::abs(placed[i].x() - frames[i].x()) < 1e-9);
            QVERIFY(std::abs(placed[i].y() - frames[i].y()) < 1e-9);
            QVERIFY(std::abs(placed[i].width() - frames[i].width()) < 1e-9);
            QVERIFY(std::abs(placed[i].height() - frames[i].height()) < 1e-9);
        }
    }
};

QTEST_GUILESS_MAIN(JustifiedGridLayoutTest)
#include "JustifiedGridLayoutTest.moc"
