#include <QTest>

#include "../state/AppStateFixture.h"
#include "MediaPager.h"

// Ratio 1.5 at 245 points: 367.5 wide, so a grid of 738 points takes two a row, 244 points high.
class MediaPagerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_pager.reset();
        m_fixture = std::make_unique<AppStateFixture>();
        m_state = m_fixture->state.get();
        QVERIFY(m_fixture->show(scanResult("/f", 10, 3)));
        m_pager = std::make_unique<MediaPager>();
        m_pager->setWidth(750);
        m_pager->setHeight(48 + 12 + 2 * 245 + 6);
        m_pager->setState(m_state);
    }

    void clampsAPageBeyondTheLast() {
        m_state->setPage(2);
        m_state->setPage(3);
        QCOMPARE(m_pager->shownPage(), 2);
        QCOMPARE(m_state->page(), 3);
        QCOMPARE(shown(), QStringLiteral("v8 v9"));
        m_state->setPage(1);
        m_state->setPage(-4);
        QCOMPARE(m_pager->shownPage(), 0);
        QCOMPARE(m_state->page(), 0);
    }

    void settlesOnTheLastPage() {
        m_state->setPage(2);
        m_pager->setHeight(4000);
        QCOMPARE(m_pager->pageCount(), 1);
        QCOMPARE(m_state->page(), 0);
        m_pager->setHeight(1);
        QCOMPARE(m_pager->pageCount(), 5);
        m_state->setPage(4);
        m_state->setFlagged(
            {QStringLiteral("/f/v0.mp4"), QStringLiteral("/f/v9.mp4"), QStringLiteral("/f/v5.mp4")}, true);
        m_state->setViewFlaggedOnly(true);
        QTRY_COMPARE(m_state->page(), 1);
        QCOMPARE(shown(), QStringLiteral("v9"));
    }

    void writesNothingBackOnFirstAppearance() {
        m_pager.reset();
        m_state->setPage(77);
        MediaPager late;
        late.classBegin();
        late.setState(m_state);
        late.setWidth(750);
        late.setHeight(556);
        late.componentComplete();
        QCOMPARE(late.shownPage(), 2);
        QCOMPARE(m_state->page(), 77);
    }

    /// A cell shows its item for as long as that is on the page, wherever it stands there; a cell whose item
    /// went shows a new one, so that turning a page makes hardly any.
    void keepsRowsOfItemsThatStay_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<int>("reused");
        QTest::newRow("other page") << QByteArray("abc") << QByteArray("de") << 2;
        QTest::newRow("longer page") << QByteArray("ab") << QByteArray("cdef") << 2;
        QTest::newRow("one gone, one more") << QByteArray("abcd") << QByteArray("acde") << 0;
        QTest::newRow("one replaced") << QByteArray("abc") << QByteArray("axc") << 1;
        QTest::newRow("shifted") << QByteArray("abc") << QByteArray("zab") << 0;
        QTest::newRow("moved") << QByteArray("abcd") << QByteArray("dacb") << 0;
    }

    void keepsRowsOfItemsThatStay() {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(int, reused);
        const auto files = [](const QByteArray &letters) {
            QList<MediaFile> list;
            for (const char letter : letters) {
                list.append(mediaFile(QByteArray("/") + letter, MediaKind::photo));
            }
            return list;
        };
        MediaPageModel model;
        model.setItems(files(before));
        QList<QPersistentModelIndex> rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            rows.append(model.index(row));
        }
        model.setItems(files(after));
        QCOMPARE(model.items(), files(after));
        for (int i = 0; i < rows.size(); ++i) {
            if (after.contains(before[i])) {
                QCOMPARE(rows[i].row(), int(after.indexOf(before[i])));
            } else if (rows[i].isValid()) {
                QVERIFY(!before.contains(after[rows[i].row()]));
                --reused;
            }
        }
        QCOMPARE(reused, 0);
    }

private:
    QString shown() const { return names(m_pager->pageItems()->items()); }

    std::unique_ptr<AppStateFixture> m_fixture;
    AppState *m_state = nullptr;
    std::unique_ptr<MediaPager> m_pager;
};

QTEST_GUILESS_MAIN(MediaPagerTest)
#include "MediaPagerTest.moc"
