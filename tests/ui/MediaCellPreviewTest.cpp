#include "MediaCellPreview.h"
#include "AppState.h"
#include "MPVPlayerController.h"
#include "NotificationCentre.h"
#include "NotificationNames.h"
#include "RecordingMPV.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>

using namespace std::chrono_literals;

namespace {

MediaFile media(const QByteArray &name, MediaKind kind = MediaKind::video) {
    MediaFile file;
    file.url = FileURL::fromNativePath("/media/" + name);
    file.kind = kind;
    return file;
}

} // namespace

/// The life of cells' previews, with a recorded player library.
class MediaCellPreviewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_mpv = std::make_unique<RecordingMPV>();
        MPVFunctions::setStandard(&m_mpv->functions());
        m_state = std::make_unique<AppState>(AppState::Services{});
    }

    void cleanup() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(ended(), started());
        m_state.reset();
        MPVFunctions::setStandard(nullptr);
        m_mpv.reset();
    }

    void endsAfterThePointerLeft() {
        const auto a = cell(media("a.mp4"));
        a->entered();
        QElapsedTimer clock;
        clock.start();
        a->left();
        QVERIFY(plays(*a) && a->hovering());
        QTRY_VERIFY(!plays(*a));
        QVERIFY2(clock.elapsed() >= 179, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(!a->hovering());
        QCOMPARE(ended(), 1);
    }

    void goesOnWhenThePointerComesBack() {
        const auto a = cell(media("a.mp4"));
        a->setExitDelay(30ms);
        a->entered();
        for (int i = 0; i < 3; ++i) {
            a->left();
            a->entered();
        }
        QTest::qWait(90);
        QVERIFY(plays(*a) && a->hovering());
        QCOMPARE(started(), 1);
    }

    void givesWayToAnotherCell() {
        const auto a = cell(media("a.mp4"));
        const auto b = cell(media("b.mp4"));
        a->setExitDelay(30ms);
        a->entered();
        a->left();
        b->entered();
        QVERIFY(!plays(*a) && !a->hovering()); // at once, not after the delay
        QVERIFY(plays(*b));
        a->entered();
        QVERIFY(plays(*a) && !plays(*b));
        QTest::qWait(90); // the delay that b's claim cancelled does not end the new preview
        QVERIFY(plays(*a));
    }

    void endsWhenAnythingIsOpened() {
        const auto a = cell(media("a.mp4"));
        a->entered();
        m_state->closeFullItem();
        QVERIFY(plays(*a));
        m_state->openFullItem(media("else.jpg", MediaKind::photo));
        QVERIFY(!plays(*a));
    }

    void doubleClickEndsBeforeItOpens() {
        const auto a = cell(media("a.mp4"));
        a->clicked();
        bool playedWhenOpened = true;
        connect(m_state.get(), &AppState::fullItemChanged, this, [&] { playedWhenOpened = plays(*a); });
        a->doubleClicked();
        QVERIFY(m_state->fullItem() == media("a.mp4"));
        QVERIFY(!playedWhenOpened);
        QCOMPARE(ended(), 1);
    }

    void endsWithItsCell_data() {
        QTest::addColumn<int>("end");
        QTest::newRow("disappears") << 0;
        QTest::newRow("gets another item") << 1;
        QTest::newRow("is destroyed") << 2;
    }

    void endsWithItsCell() {
        QFETCH(int, end);
        auto a = cell(media("a.mp4"));
        a->entered();
        a->left();
        if (end == 0) {
            a->disappeared();
        } else if (end == 1) {
            a->setItem(media("b.mp4"));
        } else {
            a.reset();
        }
        QCOMPARE(ended(), 1);
        QVERIFY(!a || !plays(*a));
    }

    void neverLeavesTwoWhileThePointerSweeps() {
        std::vector<std::unique_ptr<MediaCellPreview>> cells;
        for (int i = 0; i < 12; ++i) {
            cells.push_back(cell(media(QByteArray::number(i) + ".mp4")));
            cells.back()->setExitDelay(15ms);
        }
        for (size_t i = 0; i < 300; ++i) {
            const auto &to = cells[i * 7 % cells.size()];
            const auto &from = cells[(i + 1) * 5 % cells.size()];
            to->entered();
            from->left();
            if (i % 40 == 0) {
                QTest::qWait(20);
            }
            QVERIFY(started() - ended() <= 1);
        }
        for (const auto &each : cells) {
            each->left();
        }
        QTRY_COMPARE(ended(), started());
    }

    void photosHoverOnly() {
        const auto photo = cell(media("a.jpg", MediaKind::photo));
        photo->setExitDelay(15ms);
        photo->entered();
        photo->clicked();
        QVERIFY(photo->hovering() && !plays(*photo));
        QVERIFY(!m_state->fullItem());
        photo->left();
        QTRY_VERIFY(!photo->hovering());
        photo->doubleClicked();
        QVERIFY(m_state->fullItem() == media("a.jpg", MediaKind::photo));
        QCOMPARE(started(), 0);
    }

private:
    bool plays(const MediaCellPreview &cell) const { return cell.controller() != nullptr; }
    int started() const { return int(m_mpv->calls.count(QStringLiteral("create"))); }
    int ended() const { return int(m_mpv->calls.count(QStringLiteral("terminate_destroy"))); }

    std::unique_ptr<MediaCellPreview> cell(const MediaFile &item) {
        auto made = std::make_unique<MediaCellPreview>();
        made->setItem(item);
        made->setState(m_state.get());
        return made;
    }

    std::unique_ptr<RecordingMPV> m_mpv;
    std::unique_ptr<AppState> m_state;
};

QTEST_MAIN(MediaCellPreviewTest)
#include "MediaCellPreviewTest.moc"
