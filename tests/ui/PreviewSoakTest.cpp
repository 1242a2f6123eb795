#include "AppState.h"
#include "FullVideoPlayer.h"
#include "MPVPlayerController.h"
#include "MPVVideoSurface.h"
#include "MediaCellPreview.h"
#include "MediaMaker.h"

#include <QDir>
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <clocale>
#include <memory>
#include <vector>

namespace {

constexpr int columns = 6;
constexpr int cellCount = 30;

/// What a leak would make grow.
struct Usage {
    qint64 residentKiB = 0;
    qint64 threads = 0;
    qint64 descriptors = 0;
    int textures = 0;
};

qint64 statusField(const QByteArray &name) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name + ':')) {
            return line.mid(name.size() + 1).simplified().split(' ').constFirst().toLongLong();
        }
    }
    return -1;
}

int textureCount() {
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    context.setShareContext(QOpenGLContext::globalShareContext());
    if (!context.create() || !context.makeCurrent(&surface)) {
        return -1;
    }
    int count = 0;
    for (unsigned name = 1; name < 20'000; ++name) {
        count += context.functions()->glIsTexture(name) ? 1 : 0;
    }
    context.doneCurrent();
    return count;
}

Usage usage() {
    return {statusField("VmRSS"), statusField("Threads"), QDir(QStringLiteral("/proc/self/fd")).count(),
            textureCount()};
}

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

} // namespace

/// A restless pointer over a page of videos, some of which are none.
class PreviewSoakTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void staysFlat();

private:
    void act(std::vector<std::unique_ptr<Cell>> &cells);
    void makePage(std::vector<std::unique_ptr<Cell>> &cells, QQuickItem *parent);
    void openFullWindow(const MediaFile &item);

    QTemporaryDir m_files;
    AppState m_state{AppState::Services{}};
    QRandomGenerator m_random{7};
    Cell *m_hovered = nullptr;
    bool m_clicked = false;
};

void PreviewSoakTest::initTestCase() {
    if (!QOpenGLContext::globalShareContext() || !QOpenGLContext().create()) {
        QSKIP("no OpenGL on this display");
    }
    const FileURL whole = FileURL::fromNativePath(m_files.path().toUtf8() + "/whole.mp4");
    QVERIFY(MediaMaker::video(whole, {.size = {640, 360}, .seconds = 2, .audio = true, .indexAtEnd = false}));
    const QByteArray content = MediaMaker::read(whole);
    for (int i = 0; i < cellCount; ++i) {
        const FileURL file =
            FileURL::fromNativePath(m_files.path().toUtf8() + '/' + QByteArray::number(i) + ".mp4");
        const QByteArray bytes = i % 10 == 3   ? content.left(content.size() / 3)
                                 : i % 10 == 7 ? MediaMaker::noise(60'000)
                                               : content;
        QVERIFY(MediaMaker::write(file, bytes));
    }
}

void PreviewSoakTest::makePage(std::vector<std::unique_ptr<Cell>> &cells, QQuickItem *parent) {
    for (int i = 0; i < cellCount; ++i) {
        auto cell = std::make_unique<Cell>(parent, i);
        MediaFile item;
        item.url = FileURL::fromNativePath(m_files.path().toUtf8() + '/' + QByteArray::number(i) + ".mp4");
        cell->preview.setItem(item);
        cell->preview.setState(&m_state);
        cells.push_back(std::move(cell));
    }
}

void PreviewSoakTest::openFullWindow(const MediaFile &item) {
    FullVideoPlayer player;
    player.QObject::setProperty("item", QVariant::fromValue(item));
    player.componentComplete();
    QTest::qWait(int(m_random.bounded(120)));
    m_state.closeFullItem();
}

void PreviewSoakTest::act(std::vector<std::unique_ptr<Cell>> &cells) {
    const quint32 dice = m_random.bounded(100);
    if (dice < 50 || !m_hovered) {
        Cell *next = cells[m_random.bounded(cellCount)].get();
        if (m_hovered && m_hovered != next) {
            m_hovered->preview.left();
        }
        next->preview.entered();
        m_clicked = m_clicked && m_hovered == next;
        m_hovered = next;
    } else if (dice < 65) {
        m_hovered->preview.left();
        m_hovered = nullptr;
        m_clicked = false;
    } else if (dice < 80) {
        m_hovered->preview.clicked();
        m_clicked = true;
    } else if (dice < 95) {
        if (MPVPlayerController *player = m_hovered->preview.controller()) {
            player->seek(m_random.bounded(2.0));
        }
    } else {
        m_hovered->preview.doubleClicked();
        openFullWindow(m_hovered->preview.item());
        m_hovered->preview.left();
        m_hovered = nullptr;
        m_clicked = false;
    }
}

void PreviewSoakTest::staysFlat() {
    const int events = qEnvironmentVariableIntValue("MOSA_SOAK_EVENTS") > 0
                           ? qEnvironmentVariableIntValue("MOSA_SOAK_EVENTS")
                           : 120;
    QQuickWindow window;
    window.resize(1200, 640);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, 20'000));
    std::vector<std::unique_ptr<Cell>> cells;
    makePage(cells, window.contentItem());

    const auto rest = [&] {
        if (m_hovered) {
            m_hovered->preview.left();
            m_hovered = nullptr;
        }
        QTest::qWait(600);
    };
    Usage warm;
    for (int i = 0; i < events; ++i) {
        if (i == events / 4) {
            rest();
            warm = usage();
        }
        act(cells);
        const auto running = std::count_if(cells.begin(), cells.end(), [](const auto &cell) {
            return cell->preview.controller() != nullptr;
        });
        QVERIFY(running <= 1);
        // Nothing is heard before a click.
        const MPVPlayerController *player = m_hovered ? m_hovered->preview.controller() : nullptr;
        QVERIFY(!player || m_clicked || player->isMuted());
        QTest::qWait(int(m_random.bounded(m_random.bounded(4) == 0 ? 300 : 40)));
    }
    rest();
    const Usage end = usage();
    qInfo("%d events: resident %lld -> %lld KiB, threads %lld -> %lld, descriptors %lld -> %lld, textures %d "
          "-> %d",
          events, warm.residentKiB, end.residentKiB, warm.threads, end.threads, warm.descriptors,
          end.descriptors, warm.textures, end.textures);
    QVERIFY(warm.textures >= 0);
    QCOMPARE(end.textures, warm.textures);
    QVERIFY(end.threads <= warm.threads + 1);
    QVERIFY(end.descriptors <= warm.descriptors + 2);
    QVERIFY(end.residentKiB <= warm.residentKiB + warm.residentKiB / 5);
}

int main(int argc, char *argv[]) {
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    PreviewSoakTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "PreviewSoakTest.moc"
