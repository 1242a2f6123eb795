#include <QSignalSpy>
#include <QTest>

#include "AppStateFixture.h"

using namespace Qt::StringLiterals;

class AppStateBrowsingTest : public QObject {
    Q_OBJECT

    std::unique_ptr<AppStateFixture> m_fixture;
    AppState *m_state = nullptr;

private Q_SLOTS:
    void init() {
        m_fixture = std::make_unique<AppStateFixture>();
        m_state = m_fixture->state.get();
        QVERIFY(m_fixture->show(scanResult("/f", 4, 3)));
    }

    void derivesCurrentMedia_data() {
        QTest::addColumn<MediaKind>("tab");
        QTest::addColumn<bool>("flaggedOnly");
        QTest::addColumn<QString>("media");
        QTest::newRow("videos") << MediaKind::video << false << "v0 v2 v3";
        QTest::newRow("photos") << MediaKind::photo << false << "p0 p1 p2";
        QTest::newRow("flagged videos") << MediaKind::video << true << "v3";
        QTest::newRow("flagged photos") << MediaKind::photo << true << "p2";
    }

    void derivesCurrentMedia() {
        QFETCH(MediaKind, tab);
        QFETCH(bool, flaggedOnly);
        m_state->hideVideo(m_state->videos()[1]);
        m_state->setFlagged({u"/f/v1.mp4"_s, u"/f/v3.mp4"_s, u"/f/p2.jpg"_s, u"/gone.mp4"_s}, true);
        m_state->setPage(2);
        const QSignalSpy changes(m_state, &AppState::currentMediaChanged);
        m_state->setActiveTab(tab);
        // Any assignment, that of the same tab too, shows the first page.
        QCOMPARE(m_state->page(), 0);
        m_state->setViewFlaggedOnly(flaggedOnly);
        QTEST(names(m_state->currentMedia()), "media");
        QVERIFY(changes.size() >= 2);
        // Whatever the view shows, removed videos included.
        QCOMPARE(names(m_state->flaggedItems()), "v1 v3 p2"_L1);
    }

    void stopsAtBothEnds() {
        m_state->moveFullItem(1);
        QVERIFY(!m_state->fullItem());
        for (const auto &[end, offset] : {std::pair(0, -1), std::pair(3, 1)}) {
            m_state->openFullItem(m_state->videos()[end]);
            m_state->moveFullItem(offset);
            QCOMPARE(m_state->fullItem(), m_state->videos()[end]);
        }
    }

    void stepsNowhereFromAnItemThatDroppedOut() {
        m_state->setFlagged({u"/f/v0.mp4"_s, u"/f/v1.mp4"_s}, true);
        m_state->setViewFlaggedOnly(true);
        m_state->openFullItem(m_state->videos()[0]);
        m_state->toggleFlag(m_state->videos()[0]);
        m_state->moveFullItem(1);
        QCOMPARE(m_state->fullItem(), m_state->videos()[0]);
    }

    void movesVideosAndResets_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("destination");
        QTest::addColumn<QString>("order");
        QTest::newRow("down counts before the removal") << 1 << 3 << "v0 v2 v1 v3";
        QTest::newRow("to the end") << 0 << 4 << "v1 v2 v3 v0";
        QTest::newRow("onto itself") << 1 << 1 << "v0 v1 v2 v3";
        QTest::newRow("from nowhere") << 4 << 0 << "v0 v1 v2 v3";
        QTest::newRow("to nowhere") << 0 << 5 << "v0 v1 v2 v3";
    }

    void movesVideosAndResets() {
        QFETCH(int, from);
        QFETCH(int, destination);
        m_state->moveVideo(from, destination);
        QTEST(names(m_state->videos()), "order");
        m_state->setPage(1);
        m_state->resetVideoOrder();
        QCOMPARE(names(m_state->videos()), "v0 v1 v2 v3"_L1);
        QCOMPARE(m_state->page(), 0);
    }
};

QTEST_GUILESS_MAIN(AppStateBrowsingTest)
#include "AppStateBrowsingTest.moc"
