#include "DrawingTurns.h"
#include "MPVOpenGLView.h"
#include "MPVPlayerController.h"
#include "MPVVideoSurface.h"
#include "MediaMaker.h"
#include "ProcessUsage.h"
#include "TemporaryFolder.h"

#include <QGuiApplication>
#include <QOpenGLContext>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>
#include <clocale>
#include <memory>

namespace {

constexpr int longWait = 20'000;

bool isBlack(const QColor &color) {
    return color.red() < 20 && color.green() < 20 && color.blue() < 20;
}

QColor middle(const QImage &image) {
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

/// The player library itself, in a window, on made files.
class PlaybackTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (!QOpenGLContext::globalShareContext() || !QOpenGLContext().create()) {
            QSKIP("no OpenGL on this display");
        }
        // All that follows goes for names of any bytes.
        m_wide = m_files.at("wide \xE9 \n%20?#.mp4");
        QVERIFY(MediaMaker::video(m_wide, {.size = {320, 240}, .seconds = 2}));
        m_withSound = m_files.at("sound.mp4");
        QVERIFY(MediaMaker::video(m_withSound, {.size = {320, 240}, .seconds = 2, .audio = true}));
    }

    void init() {
        m_window = std::make_unique<QQuickWindow>();
        DrawingTurns::join(*m_window);
        m_window->setColor(Qt::magenta);
        m_window->resize(320, 240);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get(), longWait));
        m_surface = std::make_unique<MPVVideoSurface>(m_window->contentItem());
        m_surface->setSize({320, 240});
    }

    void cleanup() {
        m_surface.reset();
        m_player.reset();
        m_window.reset();
    }

    void showsTheVideoWhole_data() {
        QTest::addColumn<bool>("preview");
        QTest::newRow("texture") << false;
        QTest::newRow("picture") << true;
    }

    void showsTheVideoWhole() {
        QFETCH(bool, preview);
        auto *player = play(m_wide, preview);
        QTRY_VERIFY_WITH_TIMEOUT(player->hasRenderedFrame(), longWait);
        // Upright, in its colours, as soon as the scene has taken it over.
        QTRY_VERIFY_WITH_TIMEOUT(MediaMaker::showsPattern(shown()), longWait);
        m_surface->setSize({320, 100});
        QTRY_VERIFY_WITH_TIMEOUT(isBlack(shown().pixelColor(20, 50)), longWait);
        const QImage image = shown();
        QVERIFY(isBlack(image.pixelColor(300, 50)));
        QVERIFY(MediaMaker::showsPattern(image.copy(94, 0, 132, 100)));
        player->shutdown();
        QVERIFY(!player->surface()->frame());
        QCOMPARE(shown().pixelColor(160, 50), QColor(Qt::magenta));
    }

    /// More pixels than a software renderer draws before the next frame is due.
    void showsFramesThatTakeLongToDraw() {
        m_surface->setSize({1600, 1200});
        auto *player = play(m_wide, false);
        player->setProperty(QStringLiteral("loop-file"), QStringLiteral("inf"));
        const QSignalSpy frames(player, &MPVPlayerController::hasRenderedFrameChanged);
        QTRY_VERIFY_WITH_TIMEOUT(frames.count() >= 3, longWait);
    }

    void showsFramesWithoutTheMainThread_data() { showsTheVideoWhole_data(); }

    /// In a window that is drawn by a thread of its own.
    void showsFramesWithoutTheMainThread() {
        QFETCH(bool, preview);
        const auto *player = play(m_wide, preview);
        QTRY_VERIFY_WITH_TIMEOUT(player->hasRenderedFrame(), longWait);
        QTest::qWait(50);
        std::atomic_int taken = 0;
        std::atomic_int drawn = 0;
        std::atomic_bool onMainThread = false;
        const auto count = [&](std::atomic_int &number) {
            return [&] {
                onMainThread = QThread::currentThread() == thread();
                ++number;
            };
        };
        QObject counter;
        connect(m_window.get(), &QQuickWindow::afterSynchronizing, &counter, count(taken),
                Qt::DirectConnection);
        connect(m_window.get(), &QQuickWindow::frameSwapped, &counter, count(drawn), Qt::DirectConnection);
        QTRY_VERIFY_WITH_TIMEOUT(drawn >= 10, longWait);
        if (onMainThread) {
            QSKIP("Qt draws on the main thread here.");
        }
        QVERIFY2(taken <= 1, qPrintable(QString::number(taken)));
    }

    void seeksAndTellsTheTime() {
        auto *player = play(m_wide, false);
        QTRY_COMPARE_WITH_TIMEOUT(player->duration(), 2.0, longWait);
        player->togglePause();
        QTest::qWait(50);
        player->seek(1.2);
        QCOMPARE(player->position(), 1.2);
        QSignalSpy positions(player, &MPVPlayerController::positionChanged);
        QTRY_VERIFY_WITH_TIMEOUT(positions.count() >= 3, longWait);
        QVERIFY2(std::abs(player->position() - 1.2) <= 0.04, qPrintable(QString::number(player->position())));
    }

    void staysDarkForWhatIsNoVideo() {
        const FileURL noise = m_files.at("noise.mp4");
        QVERIFY(MediaMaker::write(noise, MediaMaker::noise(60'000)));
        // A playlist under a video's name must not lead to another file.
        const FileURL list = m_files.at("list.mp4");
        QVERIFY(MediaMaker::write(list, "#EXTM3U\n" + m_withSound.nativePath() + '\n'));
        for (const FileURL &file : {noise, list, m_files.at("missing.mp4")}) {
            const auto *player = play(file, true);
            QSignalSpy polls(player, &MPVPlayerController::pausedChanged);
            QTRY_VERIFY_WITH_TIMEOUT(polls.count() >= 3, longWait);
            QVERIFY(!player->hasRenderedFrame());
            QCOMPARE(player->duration(), 0.0);
            QCOMPARE(player->position(), 0.0);
        }
    }

    /// With its picture, even while it is paused.
    void movesToAnotherSurface() {
        auto *player = play(m_wide, false);
        QTRY_VERIFY_WITH_TIMEOUT(player->hasRenderedFrame(), longWait);
        player->togglePause();
        MPVVideoSurface second(m_window->contentItem());
        second.setSize({160, 120});
        second.setPosition({160, 0});
        second.setController(m_player.get());
        QCOMPARE(player->surface()->host(), &second);
        QTRY_VERIFY_WITH_TIMEOUT(player->surface()->frame()->size() == QSize(160, 120), longWait);
        // It is shown as soon as it has been drawn.
        QTRY_VERIFY_WITH_TIMEOUT(MediaMaker::showsPattern(shown().copy(160, 0, 160, 120)), longWait);
        QCOMPARE(shown().pixelColor(10, 230), QColor(Qt::magenta)); // the first one is empty
    }

    /// From the moment that a frame is announced, the picture is the video's.
    void neverShowsAnUndrawnFrame() {
        for (int round = 0; round < 5; ++round) {
            auto *player = play(m_wide, true);
            QImage first;
            connect(player, &MPVPlayerController::hasRenderedFrameChanged, this, [&] {
                if (first.isNull()) {
                    first = player->surface()->videoFrameLayer()->contents;
                }
            });
            QTRY_VERIFY_WITH_TIMEOUT(!first.isNull(), longWait);
            QVERIFY(!isBlack(middle(first.copy(0, 0, first.width() / 2, first.height() / 2))));
            m_surface->setController(nullptr);
        }
    }

    /// A restless pointer over a page of videos, some of which are none.
    void leavesNothingBehind() {
        const FileURL half = m_files.at("half.mp4");
        const QByteArray content = MediaMaker::read(m_withSound);
        QVERIFY(MediaMaker::write(half, content.left(content.size() / 3)));
        const FileURL files[] = {m_withSound, half, m_wide, m_files.at("missing.mp4")};
        const auto sweep = [&](int rounds) {
            for (int i = 0; i < rounds; ++i) {
                auto *player = play(files[i % 4], i % 3 != 0);
                QTest::qWait(i % 5 * 40);
                player->seek(i % 2);
                m_surface->setController(nullptr);
            }
            m_player.reset();
            QTest::qWait(300);
            shown(); // the scene lets go of textures while it draws
        };
        sweep(8);
        const int threads = ProcessUsage::threads();
        const int descriptors = ProcessUsage::descriptors();
        const int textures = ProcessUsage::textures();
        QVERIFY(textures >= 0);
        sweep(24);
        QCOMPARE(ProcessUsage::textures(), textures);
        QVERIFY2(ProcessUsage::threads() <= threads + 1,
                 qPrintable(QString::number(ProcessUsage::threads() - threads)));
        QVERIFY2(ProcessUsage::descriptors() <= descriptors + 2,
                 qPrintable(QString::number(ProcessUsage::descriptors() - descriptors)));
    }

private:
    MPVPlayerController *play(const FileURL &file, bool preview) {
        m_player = std::make_unique<MPVPlayerController>(file, preview);
        m_surface->setController(m_player.get());
        return m_player.get();
    }

    QImage shown() const { return m_window->grabWindow(); }

    TemporaryFolder m_files;
    FileURL m_wide;
    FileURL m_withSound;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<MPVVideoSurface> m_surface;
    std::unique_ptr<MPVPlayerController> m_player;
};

int main(int argc, char *argv[]) {
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    PlaybackTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "PlaybackTest.moc"
