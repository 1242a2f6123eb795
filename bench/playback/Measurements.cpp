#include "Measurements.h"

#include "BarePlayer.h"
#include "MPVPlayerController.h"
#include "MPVVideoSurface.h"
#include "MainThreadGaps.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QQuickWindow>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

#include <sys/resource.h>

namespace {

const QSizeF tile(432, 243);

double milliseconds(const QElapsedTimer &clock) {
    return double(clock.nsecsElapsed()) / 1e6;
}

void wait(int duration) {
    QEventLoop loop;
    QTimer::singleShot(duration, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

bool waitUntil(const std::function<bool()> &condition, int patience = 5000) {
    QElapsedTimer clock;
    clock.start();
    // Wakes the loop; with a time limit, processEvents() would not sleep but keep a whole core busy.
    QTimer alarm;
    alarm.start(2);
    while (!condition() && clock.elapsed() < patience) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return condition();
}

QString summary(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const auto at = [&](double part) { return values[size_t(part * double(values.size() - 1))]; };
    return QStringLiteral("median %1 ms, 90 % %2 ms, worst %3 ms (%4 runs)")
        .arg(at(0.5), 0, 'f', 1)
        .arg(at(0.9), 0, 'f', 1)
        .arg(at(1), 0, 'f', 1)
        .arg(values.size());
}

void print(const QString &line) {
    QTextStream(stdout) << line << Qt::endl;
}

/// A surface with a player, as a cell or the viewer shows it.
struct Playback {
    Playback(QQuickWindow &window, const QByteArray &file, bool preview, const QSizeF &size)
        : player(FileURL::fromNativePath(file), preview), surface(window.contentItem()) {
        surface.setSize(size);
        surface.setController(&player);
    }
    bool waitForFrame() {
        return waitUntil([this] { return player.hasRenderedFrame(); });
    }

    MPVPlayerController player;
    MPVVideoSurface surface;
};

double processorSeconds(int who) {
    rusage usage{};
    getrusage(who, &usage);
    const auto seconds = [](const timeval &time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double playingShare(QQuickWindow &window, const QByteArray &file, bool preview, const QSizeF &size,
                    int seconds) {
    Playback playback(window, file, preview, size);
    playback.waitForFrame();
    const double before = processorSeconds(RUSAGE_SELF);
    wait(seconds * 1000);
    return (processorSeconds(RUSAGE_SELF) - before) / seconds;
}

double mpvShare(const QSize &size, const QByteArray &file, int seconds) {
    QProcess mpv;
    mpv.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const double before = processorSeconds(RUSAGE_CHILDREN);
    mpv.start(QStringLiteral("mpv"),
              {QStringLiteral("--no-config"), QStringLiteral("--really-quiet"), QStringLiteral("--vo=gpu"),
               QStringLiteral("--gpu-api=opengl"), QStringLiteral("--gpu-sw=yes"),
               QStringLiteral("--hwdec=no"), QStringLiteral("--no-audio"), QStringLiteral("--no-osc"),
               QStringLiteral("--geometry=%1x%2").arg(size.width()).arg(size.height()),
               QStringLiteral("--length=%1").arg(seconds), QString::fromUtf8(file)});
    if (!mpv.waitForFinished(60'000) || mpv.exitCode() != 0) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    return (processorSeconds(RUSAGE_CHILDREN) - before) / seconds;
}

} // namespace

void Measurements::stalls(QQuickWindow &window, const QByteArray &file) {
    constexpr int seconds = 8;
    Playback playback(window, file, false, window.size());
    playback.waitForFrame();
    MainThreadGaps gaps;
    gaps.start(&window);
    wait(seconds * 1000);
    gaps.stop();
    print(
        QStringLiteral("stalls while playing: %1 % of the time in gaps over 8 ms, worst %2 ms; %3 % without "
                       "the window's drawing, worst %4 ms")
            .arg(gaps.figures().share() * 100, 0, 'f', 2)
            .arg(gaps.figures().longest, 0, 'f', 1)
            .arg(gaps.withoutDrawing().share() * 100, 0, 'f', 2)
            .arg(gaps.withoutDrawing().longest, 0, 'f', 1));
}

void Measurements::startsAndEnds(QQuickWindow &window, const QByteArray &file) {
    std::vector<double> starts;
    std::vector<double> ends;
    for (int run = 0; run < 40; ++run) {
        QElapsedTimer clock;
        clock.start();
        Playback playback(window, file, true, tile);
        starts.push_back(milliseconds(clock));
        playback.waitForFrame();
        wait(run * 37 % 200); // at any moment between two frames
        clock.start();
        playback.player.shutdown();
        ends.push_back(milliseconds(clock));
    }
    print(QStringLiteral("starting a preview: ") + summary(starts));
    print(QStringLiteral("ending a preview:   ") + summary(ends));
}

void Measurements::firstFrames(QQuickWindow &window, const QByteArray &file) {
    std::vector<double> ours;
    std::vector<double> bare;
    for (int run = 0; run < 20; ++run) {
        bare.push_back(BarePlayer::firstFrame(file));
        wait(20);
        QElapsedTimer clock;
        clock.start();
        Playback playback(window, file, true, tile);
        bool shown = false;
        QObject::connect(&playback.player, &MPVPlayerController::hasRenderedFrameChanged, &playback.surface,
                         [&] {
                             QObject::connect(&window, &QQuickWindow::frameSwapped, &playback.surface,
                                              [&] { shown = true; });
                         });
        waitUntil([&] { return shown; });
        ours.push_back(milliseconds(clock));
        wait(20);
    }
    print(QStringLiteral("first frame shown:   ") + summary(ours));
    print(QStringLiteral("bare calls, drawn:   ") + summary(bare));
}

void Measurements::processorTime(QQuickWindow &window, const QByteArray &file) {
    constexpr int seconds = 8;
    const double peer = mpvShare(window.size(), file, seconds);
    print(QStringLiteral("processor time per second: mpv program %1 s, full-window %2 s, preview tile %3 s")
              .arg(peer, 0, 'f', 2)
              .arg(playingShare(window, file, false, window.size(), seconds), 0, 'f', 2)
              .arg(playingShare(window, file, true, tile, seconds), 0, 'f', 2));
}
