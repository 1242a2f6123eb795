#include "DrawingTurns.h"
#include "Measurements.h"

#include <QGuiApplication>
#include <QProcess>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <clocale>
#include <utility>

namespace {

/// Twelve seconds of 1080p at 30 frames a second, as a camera writes them.
bool makeFile(const QString &path) {
    return QProcess::execute(QStringLiteral("ffmpeg"),
                             {QStringLiteral("-v"),
                              QStringLiteral("error"),
                              QStringLiteral("-f"),
                              QStringLiteral("lavfi"),
                              QStringLiteral("-i"),
                              QStringLiteral("testsrc2=size=1920x1080:rate=30:duration=12"),
                              QStringLiteral("-f"),
                              QStringLiteral("lavfi"),
                              QStringLiteral("-i"),
                              QStringLiteral("sine=frequency=440:duration=12"),
                              QStringLiteral("-c:v"),
                              QStringLiteral("libx264"),
                              QStringLiteral("-preset"),
                              QStringLiteral("veryfast"),
                              QStringLiteral("-b:v"),
                              QStringLiteral("8M"),
                              QStringLiteral("-g"),
                              QStringLiteral("60"),
                              QStringLiteral("-pix_fmt"),
                              QStringLiteral("yuv420p"),
                              QStringLiteral("-c:a"),
                              QStringLiteral("aac"),
                              path}) == 0;
}

} // namespace

/// Measures all, or what is named: starts, frames, stalls, processor.
int main(int argc, char *argv[]) {
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("film.mp4"));
    if (!makeFile(path)) {
        return 1;
    }
    QQuickWindow window;
    DrawingTurns::join(window);
    window.setColor(Qt::black);
    window.resize(1280, 720);
    window.show();
    while (!window.isExposed()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    const QByteArray file = path.toUtf8();
    const QStringList chosen = application.arguments().mid(1);
    const std::pair<const char *, void (*)(QQuickWindow &, const QByteArray &)> measurements[] = {
        {"starts", Measurements::startsAndEnds},
        {"frames", Measurements::firstFrames},
        {"stalls", Measurements::stalls},
        {"processor", Measurements::processorTime},
    };
    for (const auto &[name, measure] : measurements) {
        if (chosen.isEmpty() || chosen.contains(QLatin1String(name))) {
            measure(window, file);
        }
    }
    return 0;
}
