#include "CommandLine.h"
#include "HeapPolicy.h"
#include "MessageBuses.h"
#include "MosaApp.h"
#include "TerminationSignals.h"

#include <QGuiApplication>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QtQml/QQmlExtensionPlugin>

#include <clocale>
#include <cstdio>
#include <unistd.h>

Q_IMPORT_QML_PLUGIN(Mosa_StatePlugin)
Q_IMPORT_QML_PLUGIN(Mosa_PlaybackPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_UIPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_AppPlugin)

using namespace std::chrono_literals;

namespace {

CommandLine readCommandLine(int argc, char *argv[]) {
    char directory[PATH_MAX];
    const char *workingDirectory = ::getcwd(directory, sizeof directory);
    return CommandLine::parse(QList<QByteArray>(argv + std::min(argc, 1), argv + argc),
                              QByteArray(workingDirectory != nullptr ? workingDirectory : "/"));
}

/// Relative paths are invalid by the freedesktop.org rules for base directories; they would lie wherever Mosa
/// was started.
void ignoreRelativeDirectories() {
    for (const char *variable : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
        if (!qgetenv(variable).startsWith('/')) {
            qunsetenv(variable);
        }
    }
}

/// The exit code of a command line that asks for something else than the window.
int answer(const CommandLine &commandLine) {
    switch (commandLine.action) {
    case CommandLine::Action::ShowVersion:
        std::puts("Mosa " MOSA_VERSION);
        return 0;
    case CommandLine::Action::ShowHelp:
        std::fputs(CommandLine::helpText(), stdout);
        return 0;
    default:
        std::fprintf(stderr, "mosa: unknown option %s\nTry \"mosa --help\".\n",
                     commandLine.unknownOption.constData());
        return 2;
    }
}

int runApplication(int &argc, char *argv[], const std::optional<FileURL> &folder) {
    QGuiApplication application(argc, argv);
    // The player library parses numbers with the C locale's point; the application object set the user's.
    std::setlocale(LC_NUMERIC, "C");

    const TerminationSignals signalsOfTheSystem;
    MosaApp mosa;
    QObject::connect(&signalsOfTheSystem, &TerminationSignals::requested, &mosa, &MosaApp::quit);
    mosa.start(folder);
    const int code = QGuiApplication::exec();
    if (!mosa.end()) {
        ::_exit(code);
    }
    return code;
}

} // namespace

int main(int argc, char *argv[]) {
    const CommandLine commandLine = readCommandLine(argc, argv);
    if (commandLine.action != CommandLine::Action::Run) {
        return answer(commandLine);
    }
    ignoreRelativeDirectories();
    HeapPolicy::returnLargeBlocks();
    MessageBuses::avoidStuckOnes(300ms);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QCoreApplication::setApplicationName(QStringLiteral("Mosa"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MOSA_VERSION));
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    return runApplication(argc, argv, commandLine.folder);
}
