// The whole program on a folder of 10,000 files: how soon its first page is there, how free its main thread
// stays, how fast a page turns, what its memory does.
//
//     bench_session DIRECTORY [ROUNDS]
//
// Needs a display with OpenGL and a session bus. The directory keeps the files; each figure comes from a
// process of its own, which this program starts again as "bench_session WHAT FOLDER".

#include "AppState.h"
#include "HeapPolicy.h"
#include "MainThreadGaps.h"
#include "MediaPager.h"
#include "PageReference.h"
#include "ScanInput.h"
#include "Session.h"
#include "SessionInput.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QQuickStyle>
#include <QTemporaryDir>
#include <QtQml/QQmlExtensionPlugin>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <vector>

Q_IMPORT_QML_PLUGIN(Mosa_StatePlugin)
Q_IMPORT_QML_PLUGIN(Mosa_PlaybackPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_UIPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_AppPlugin)

namespace {

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Of this process's own pages, in MiB.
double residentMemory() {
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    double sum = 0;
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith("Private_")) {
                sum += line.simplified().split(' ').at(1).toDouble() / 1024;
            }
        }
    }
    return sum;
}

void turn(Session &session, Qt::Key key) {
    const int page = session.pager().shownPage();
    session.press(key);
    session.untilPresented([&] { return session.pager().shownPage() != page && session.isComplete(); });
}

/// Milliseconds, then the page's files.
void firstPage(const FileURL &folder) {
    Session session;
    QElapsedTimer clock;
    clock.start();
    session.open(folder);
    session.untilPresented([&] { return session.isComplete(); });
    std::printf("%.3f\n", double(clock.nsecsElapsed()) * 1e-6);
    for (const MediaFile &file : session.pager().itemsOfPage(0)) {
        std::printf("%s\n", file.url.nativePath().constData());
    }
}

void gaps(const FileURL &folder) {
    Session session;
    session.pointAway();
    // Nobody chooses a folder sooner; until then the program has loaded what it starts without.
    session.wait(500);
    MainThreadGaps watch;
    watch.start(session.window());
    session.open(folder);
    session.untilPresented([&] { return session.isComplete(); });
    for (int i = 0; i < 50; ++i) {
        turn(session, Qt::Key_Right);
        // Two pages a second are more than anybody looks at.
        session.wait(500);
    }
    watch.stop();
    for (const MainThreadGaps::Figures &figures : {watch.figures(), watch.withoutDrawing()}) {
        std::printf("%.3f\n%.5f\n", figures.longest, figures.share());
    }
}

void memory(const FileURL &folder) {
    Session session;
    session.open(folder);
    for (int page = 1; page <= 200; ++page) {
        if (page == 10 || page == 200) {
            session.untilPresented([&] { return session.isComplete(); });
            std::printf("%.3f\n", residentMemory());
        }
        turn(session, Qt::Key_Right);
    }
}

void turns(const FileURL &folder) {
    Session session;
    session.open(folder);
    turn(session, Qt::Key_Right);
    turn(session, Qt::Key_Left);
    for (int i = 0; i < 30; ++i) {
        MainThreadGaps watch;
        QElapsedTimer clock;
        clock.start();
        watch.start(session.window());
        turn(session, i % 2 == 0 ? Qt::Key_Right : Qt::Key_Left);
        const double time = double(clock.nsecsElapsed()) * 1e-6;
        std::printf("%.3f\n%.3f\n", time, time - watch.drawing());
    }
}

/// Nothing is measured here: this is what to run under a profiler.
void wholeSession(const FileURL &folder) {
    Session session;
    session.open(folder);
    session.untilPresented([&] { return session.isComplete(); });
    for (int i = 0; i < 50; ++i) {
        turn(session, Qt::Key_Right);
    }
    for (int i = 0; i < 50; ++i) {
        session.hover(i);
        session.wait(400);
    }
}

/// What an empty window of that size needs from a request to a frame on the screen.
void bareTurns() {
    QQuickWindow window;
    window.resize(1440, 900);
    window.show();
    for (int i = 0; i < 31; ++i) {
        bool presented = false;
        QObject context;
        QElapsedTimer clock;
        clock.start();
        QObject::connect(&window, &QQuickWindow::frameSwapped, &context, [&] { presented = true; });
        window.update();
        while (!presented) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        if (i > 0) {
            std::printf("%.3f\n", double(clock.nsecsElapsed()) * 1e-6);
        }
    }
}

int measure(const QByteArray &what, const FileURL &folder) {
    if (what == "first-page") {
        firstPage(folder);
    } else if (what == "gaps") {
        gaps(folder);
    } else if (what == "memory") {
        memory(folder);
    } else if (what == "turns") {
        turns(folder);
    } else if (what == "whole") {
        wholeSession(folder);
    } else if (what == "bare-turns") {
        bareTurns();
    } else {
        return 2;
    }
    std::fflush(stdout);
    return 0;
}

/// Runs a measurement in a process of its own, with the user's directories in `home`.
QList<QByteArray> lines(const char *what, const FileURL &folder, const QString &home) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
        environment.insert(QLatin1String(variable), home);
    }
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {QLatin1String(what), folder.path()});
    process.waitForFinished(-1);
    QList<QByteArray> result = process.readAllStandardOutput().split('\n');
    result.removeLast();
    if (process.exitCode() != 0 || result.isEmpty()) {
        std::fprintf(stderr, "%s failed\n", what);
        std::exit(1);
    }
    return result;
}

std::vector<double> numbers(const QList<QByteArray> &lines) {
    std::vector<double> result;
    for (const QByteArray &line : lines) {
        result.push_back(line.toDouble());
    }
    return result;
}

void row(const char *what, const char *peer, double ours, double theirs, const char *unit, double ratio,
         double target) {
    std::printf("| %s | %s | %.1f %s | %.1f %s | %.3f | ≤ %.2f | %s |\n", what, peer, ours, unit, theirs,
                unit, ratio, target, ratio <= target ? "met" : "missed");
    std::fflush(stdout);
}

void compareFirstPages(const ScanInput::Library &library, const FileURL &folder, int rounds) {
    std::vector<double> cold, warm, coldParts, warmParts;
    for (int i = 0; i < rounds; ++i) {
        const QTemporaryDir home;
        for (const bool isWarm : {false, true}) {
            QList<QByteArray> page = lines("first-page", folder, home.path());
            (isWarm ? warm : cold).push_back(page.takeFirst().toDouble());
            const double scan = PageReference::scan(library, folder);
            const double pictures =
                isWarm ? PageReference::cachedPictures(page, home.path()) : PageReference::pictures(page);
            (isWarm ? warmParts : coldParts).push_back(scan + pictures);
        }
    }
    const auto compare = [](const char *what, const std::vector<double> &ours,
                            const std::vector<double> &parts) {
        std::vector<double> ratios;
        for (size_t i = 0; i < ours.size(); ++i) {
            ratios.push_back(ours[i] / parts[i]);
        }
        row(what, "sum of its parts", median(ours), median(parts), "ms", median(ratios), 1.3);
    };
    compare("first page of 10,000 files, cold cache", cold, coldParts);
    compare("first page of 10,000 files, warm cache", warm, warmParts);
}

void compareTurns(const FileURL &folder, const QString &home) {
    constexpr double frame = 1000.0 / 60;
    std::vector<double> ours;
    std::vector<double> withoutDrawing;
    for (const double number : numbers(lines("turns", folder, home))) {
        (ours.size() > withoutDrawing.size() ? withoutDrawing : ours).push_back(number);
    }
    const double bare = median(numbers(lines("bare-turns", folder, home)));
    row("page turn, key to frame", "a frame at 60 Hz", median(ours), frame, "ms", median(ours) / frame, 2);
    row("page turn, without drawing", "a frame at 60 Hz", median(withoutDrawing), frame, "ms",
        median(withoutDrawing) / frame, 2);
    row("page turn, key to frame", "a bare window's frame", median(ours), bare, "ms", median(ours) / bare,
        2 * frame / bare);
}

int compareAll(const FileURL &storage, int rounds) {
    const ScanInput::Library library = ScanInput::library(storage);
    const FileURL folder = SessionInput::flatFolder(storage, library);
    std::printf("| what | beside | Mosa | peer | ratio | target | |\n|---|---|---|---|---|---|---|\n");
    compareFirstPages(library, folder, rounds);
    const QTemporaryDir home;
    compareTurns(folder, home.path());
    const auto gapFigures = numbers(lines("gaps", folder, QTemporaryDir().path()));
    const auto compareGaps = [&](const char *what, const double *figures) {
        row(what, "longest pause allowed", figures[0], 50, "ms", figures[0] / 50, 1);
        row(what, "time in pauses over 8 ms", figures[1] * 100, 1, "%", figures[1] * 100, 1);
    };
    compareGaps("main thread, scan and 51 pages", gapFigures.data());
    compareGaps("the same, without drawing", gapFigures.data() + 2);
    const auto memoryFigures = numbers(lines("memory", SessionInput::photoFolder(storage), home.path()));
    row("memory after 200 pages", "after 10 pages", memoryFigures[1], memoryFigures[0], "MiB",
        memoryFigures[1] / memoryFigures[0], 1.05);
    return 0;
}

} // namespace

int main(int argc, char *argv[]) {
    HeapPolicy::returnLargeBlocks();
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QCoreApplication::setApplicationName(QStringLiteral("Mosa"));
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QStringList arguments = QCoreApplication::arguments();
    const QByteArray first = arguments.value(1, QStringLiteral("bench-input")).toUtf8();
    if (arguments.size() > 2 && arguments[2].startsWith(u'/')) {
        return measure(first, FileURL::directory(arguments[2].toUtf8()));
    }
    return compareAll(FileURL::directory(QDir(arguments.value(1)).absolutePath().toUtf8()),
                      std::max(1, arguments.value(2, QStringLiteral("5")).toInt()));
}
