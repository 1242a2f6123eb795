// A restless pointer over a page of videos, some of which are none: bench_soak [EVENTS]. Prints what the
// process holds after a quarter of the events and at the end, and fails when it grew, when two previews
// played at once or when one was heard before a click.

#include "AppState.h"
#include "DrawingTurns.h"
#include "FullVideoPlayer.h"
#include "MPVPlayerController.h"
#include "MPVVideoSurface.h"
#include "MediaCellPreview.h"
#include "MediaMaker.h"
#include "ProcessUsage.h"

#include <QFile>
#include <QGuiApplication>
#include <QPointer>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

constexpr int columns = 6;
constexpr int cellCount = 30;

void wait(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Resident, in KiB; -1 when it cannot be read.
qint64 residentMemory() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) {
            return line.mid(6).simplified().split(' ').constFirst().toLongLong();
        }
    }
    return -1;
}

struct Usage {
    qint64 memory = residentMemory();
    int threads = ProcessUsage::threads();
    int descriptors = ProcessUsage::descriptors();
    int textures = ProcessUsage::textures();
};

/// A cell as the grid has it, without its looks.
struct Cell {
    Cell(QQuickItem *parent, int index) : surface(parent) {
        surface.setPosition({double(index % columns) * 200, double(index / columns) * 120.0});
        surface.setSize({196, 116});
        QObject::connect(&preview, &MediaCellPreview::controllerChanged, &surface,
                         [this] { surface.setController(preview.controller()); });
    }
    MediaCellPreview preview;
    MPVVideoSurface surface;
};

class Soak {
public:
    Soak(const QByteArray &folder, QQuickItem *parent);

    void act();
    /// The pointer leaves the page, and what ends with that has time to.
    void rest();
    /// At most one preview plays, and none that nobody clicked is heard.
    bool holds() const;

private:
    void leave();
    void openFullWindow(const MediaFile &item);

    AppState m_state{AppState::Services{}};
    std::vector<std::unique_ptr<Cell>> m_cells;
    QRandomGenerator m_random{7};
    Cell *m_hovered = nullptr;
    /// Once clicked it stays audible to its end, also when the pointer leaves and is soon back.
    QPointer<MPVPlayerController> m_clicked;
};

Soak::Soak(const QByteArray &folder, QQuickItem *parent) {
    for (int i = 0; i < cellCount; ++i) {
        auto cell = std::make_unique<Cell>(parent, i);
        MediaFile item;
        item.url = FileURL::fromNativePath(folder + '/' + QByteArray::number(i) + ".mp4");
        cell->preview.setItem(item);
        cell->preview.setState(&m_state);
        m_cells.push_back(std::move(cell));
    }
}

void Soak::leave() {
    if (m_hovered) {
        m_hovered->preview.left();
    }
    m_hovered = nullptr;
}

void Soak::rest() {
    leave();
    wait(600);
}

void Soak::openFullWindow(const MediaFile &item) {
    FullVideoPlayer player;
    player.QObject::setProperty("item", QVariant::fromValue(item));
    player.componentComplete();
    wait(int(m_random.bounded(120)));
    m_state.closeFullItem();
}

void Soak::act() {
    const quint32 dice = m_random.bounded(100);
    if (dice < 50 || !m_hovered) {
        Cell *next = m_cells[m_random.bounded(cellCount)].get();
        if (m_hovered != next) {
            leave();
        }
        next->preview.entered();
        m_hovered = next;
    } else if (dice < 65) {
        leave();
    } else if (dice < 80) {
        m_hovered->preview.clicked();
        m_clicked = m_hovered->preview.controller();
    } else if (dice < 95) {
        if (MPVPlayerController *player = m_hovered->preview.controller()) {
            player->seek(m_random.bounded(2.0));
        }
    } else {
        m_hovered->preview.doubleClicked();
        openFullWindow(m_hovered->preview.item());
        leave();
    }
    wait(int(m_random.bounded(m_random.bounded(4) == 0 ? 300 : 40)));
}

bool Soak::holds() const {
    const auto running = std::count_if(m_cells.begin(), m_cells.end(), [](const auto &cell) {
        return cell->preview.controller() != nullptr;
    });
    const MPVPlayerController *player = m_hovered ? m_hovered->preview.controller() : nullptr;
    return running <= 1 && (!player || player == m_clicked || player->isMuted());
}

bool makeFiles(const QByteArray &folder) {
    const FileURL whole = FileURL::fromNativePath(folder + "/whole.mp4");
    bool made =
        MediaMaker::video(whole, {.size = {640, 360}, .seconds = 2, .audio = true, .indexAtEnd = false});
    const QByteArray content = MediaMaker::read(whole);
    for (int i = 0; i < cellCount; ++i) {
        const QByteArray bytes = i % 10 == 3   ? content.left(content.size() / 3)
                                 : i % 10 == 7 ? MediaMaker::noise(60'000)
                                               : content;
        made &=
            MediaMaker::write(FileURL::fromNativePath(folder + '/' + QByteArray::number(i) + ".mp4"), bytes);
    }
    return made;
}

bool grew(const Usage &before, const Usage &after) {
    return after.textures != before.textures || after.threads > before.threads + 1 ||
           after.descriptors > before.descriptors + 2 || after.memory > before.memory + before.memory / 20;
}

int run(int events) {
    const QTemporaryDir files;
    if (!makeFiles(files.path().toUtf8())) {
        std::fputs("the videos could not be made\n", stderr);
        return 1;
    }
    QQuickWindow window;
    DrawingTurns::join(window);
    window.resize(1200, 640);
    window.show();
    while (!window.isExposed()) {
        wait(20);
    }
    Soak soak(files.path().toUtf8(), window.contentItem());
    for (int i = 0; i < events / 4; ++i) {
        soak.act();
    }
    soak.rest();
    const Usage early;
    int broken = 0;
    for (int i = events / 4; i < events; ++i) {
        soak.act();
        broken += soak.holds() ? 0 : 1;
    }
    soak.rest();
    const Usage end;
    std::printf(
        "%d events: memory %lld to %lld KiB, threads %d to %d, descriptors %d to %d, textures %d to %d; "
        "%d times a second preview or a sound nobody asked for\n",
        events, early.memory, end.memory, early.threads, end.threads, early.descriptors, end.descriptors,
        early.textures, end.textures, broken);
    return broken > 0 || grew(early, end) ? 1 : 0;
}

} // namespace

int main(int argc, char *argv[]) {
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    return run(std::max(4, QCoreApplication::arguments().value(1, QStringLiteral("1000")).toInt()));
}
