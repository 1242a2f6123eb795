#include "MediaGridSizing.h"
#include "JustifiedGridLayout.h"
#include "JustifiedRows.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <random>

using MediaGridSizing::Range;
using Ratios = std::vector<double>;

// The grid lays out one page at a time: what the pages counted as whole rows must come out as the same rows,
// as high as the page allows, and the next page's first row must not have fitted any more.

class MediaGridSizingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cutsPages_data() {
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<Ratios>("ratios");
        QTest::addColumn<std::vector<Range>>("pages");

        const Ratios seven{1.5, 1.5, 1.5, 0.75, 2.0, 1.0, 1.0};
        using Pages = std::vector<Range>;
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("nothing") << QSizeF(1000, 600) << Ratios{} << Pages{};
        QTest::newRow("both rows fit") << QSizeF(1000, 600) << seven << Pages{{0, 7}};
        QTest::newRow("one row a page") << QSizeF(1000, 400) << seven << Pages{{0, 3}, {3, 7}};
        // The rows are 988/4.5 and 982/4.75 high: 432.2923… with the gap between them.
        QTest::newRow("within the tolerance") << QSizeF(1000, 431.80) << seven << Pages{{0, 7}};
        QTest::newRow("beyond the tolerance") << QSizeF(1000, 431.79) << seven << Pages{{0, 3}, {3, 7}};
        QTest::newRow("wide ones count as 3.5") << QSizeF(1000, 800) << Ratios{5, 5} << Pages{{0, 2}};
        QTest::newRow("unfilled row") << QSizeF(1000, 800) << Ratios{10} << Pages{{0, 1}};
        QTest::newRow("tiny area") << QSizeF(50, 50) << Ratios{1.0, 0.2, 5.0}
                                   << Pages{{0, 1}, {1, 2}, {2, 3}};
        QTest::newRow("no area") << QSizeF(-7, 0) << Ratios{0.1, 0.1} << Pages{{0, 1}, {1, 2}};
        QTest::newRow("an area that is not a number")
            << QSizeF(nan, nan) << Ratios{1, 1} << Pages{{0, 1}, {1, 2}};
        QTest::newRow("a ratio that is not a number")
            << QSizeF(85, 250) << Ratios{nan, 1} << Pages{{0, 1}, {1, 2}};
        // 2 × 245 wide at target height: the first item closes its row, both rows are 245 high.
        QTest::newRow("natural width meets the width")
            << QSizeF(490, 490) << Ratios{2, 2} << Pages{{0, 1}, {1, 2}};
        // The last row counts with its 245 points, not with what would fill the width.
        QTest::newRow("last row unscaled") << QSizeF(490, 496) << Ratios{2, 0.5} << Pages{{0, 2}};
        QTest::newRow("last row does not fit") << QSizeF(490, 495) << Ratios{2, 0.5} << Pages{{0, 1}, {1, 2}};
    }

    void cutsPages() {
        QFETCH(QSizeF, size);
        QFETCH(Ratios, ratios);
        QFETCH(std::vector<Range>, pages);
        QVERIFY(MediaGridSizing::pageRanges(size, ratios) == pages);
    }

    void coversEveryItemOnceAndBreaksWhereTheGridBreaks() {
        constexpr JustifiedGridLayout grid{.spacing = 6, .targetHeight = 245};
        std::mt19937 random(11); // NOLINT: the same lists on every run
        std::uniform_real_distribution<double> ratio(0.3, 4);
        std::uniform_real_distribution<double> length(86, 2600);
        for (int round = 0; round < 300; ++round) {
            Ratios ratios(random() % 200 + 1);
            std::generate(ratios.begin(), ratios.end(), [&] { return ratio(random); });
            const QSizeF size(length(random), length(random));
            const auto whole = grid.frames(ratios, size.width());
            qsizetype next = 0;
            for (const Range &page : MediaGridSizing::pageRanges(size, ratios)) {
                QCOMPARE(page.begin, next);
                QVERIFY(page.end > page.begin);
                next = page.end;
                const std::span items(ratios.data() + page.begin, size_t(page.end - page.begin));
                const auto alone = grid.frames(items, size.width());
                const QPointF moved = whole[size_t(page.begin)].topLeft() - alone.front().topLeft();
                for (size_t i = 0; i < alone.size(); ++i) {
                    const QRectF expected = whole[size_t(page.begin) + i];
                    QVERIFY(std::abs(expected.y() - alone[i].y() - moved.y()) < 1e-6);
                    QVERIFY(std::abs(expected.height() - alone[i].height()) < 1e-9);
                }
                const bool oneRow = alone.front().y() == alone.back().y();
                QVERIFY(oneRow || alone.back().bottom() <= size.height() + 0.5 + 1e-6);
                if (page.end < qsizetype(whole.size())) {
                    const double withNext =
                        whole[size_t(page.end)].bottom() - whole[size_t(page.begin)].top();
                    QVERIFY(withNext > size.height() + 0.5 - 1e-6);
                }
            }
            QCOMPARE(next, qsizetype(ratios.size()));
        }
    }
};

QTEST_GUILESS_MAIN(MediaGridSizingTest)
#include "MediaGridSizingTest.moc"
