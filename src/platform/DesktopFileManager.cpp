#include "DesktopFileManager.h"

#include "BackgroundTask.h"
#include "DesktopPortal.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The descriptor to hand to the portal, opened where a slow file system holds up nobody.
struct OpenedFile {
    QDBusUnixFileDescriptor descriptor;
    bool isDirectory = false;
};

OpenedFile openForPortal(const FileURL &url) {
    OpenedFile result;
    const int fd = ::open(url.nativePath().constData(), O_PATH | O_CLOEXEC);
    if (fd < 0) {
        return result;
    }
    struct stat status {};
    result.isDirectory = ::fstat(fd, &status) == 0 && S_ISDIR(status.st_mode);
    result.descriptor.giveFileDescriptor(fd);
    return result;
}

QDBusMessage portalCall(const QString &method) {
    return DesktopPortal::call(QStringLiteral("org.freedesktop.portal.OpenURI"), method);
}

} // namespace

DesktopFileManager::DesktopFileManager(QDBusConnection bus, Opener opener, bool sandboxed, QObject *parent)
    : QObject(parent), m_bus(std::move(bus)), m_opener(std::move(opener)), m_sandboxed(sandboxed) {}

bool DesktopFileManager::isSandboxed() {
    return QFile::exists(QStringLiteral("/.flatpak-info")) || qEnvironmentVariableIsSet("SNAP");
}

void DesktopFileManager::runOpener(const QString &uri) {
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (!opener.isEmpty()) {
        QProcess::startDetached(opener, {uri});
        return;
    }
    const QString gio = QStandardPaths::findExecutable(QStringLiteral("gio"));
    if (!gio.isEmpty()) {
        QProcess::startDetached(gio, {QStringLiteral("open"), uri});
    }
}

void DesktopFileManager::showInFileManager(const FileURL &url) {
    const FileURL folder = url.deletingLastPathComponent();
    if (!m_bus.isConnected()) {
        openInDefaultApp(folder);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QString::fromLatin1(url.uri())} << QString();
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, folder] {
        watcher->deleteLater();
        if (watcher->isError()) {
            openInDefaultApp(folder);
        }
    });
}

void DesktopFileManager::openInDefaultApp(const FileURL &url) {
    if (m_sandboxed && m_bus.isConnected()) {
        openThroughPortal(url);
    } else {
        m_opener(QString::fromLatin1(url.uri()));
    }
}

void DesktopFileManager::openThroughPortal(const FileURL &url) {
    BackgroundTask::run<OpenedFile>([url](QPromise<OpenedFile> &promise) {
        promise.addResult(openForPortal(url));
    }).then(this, [this](const OpenedFile &file) {
        if (!file.descriptor.isValid()) {
            return;
        }
        QDBusMessage call =
            portalCall(file.isDirectory ? QStringLiteral("OpenDirectory") : QStringLiteral("OpenFile"));
        call << QString() << QVariant::fromValue(file.descriptor) << QVariantMap();
        m_bus.asyncCall(call);
    });
}

void DesktopFileManager::openUrl(const QUrl &url) {
    if (url.isLocalFile()) {
        // The portal takes no addresses of files.
        openInDefaultApp(FileURL::fromPath(url.toLocalFile()));
        return;
    }
    const QString text = url.toString(QUrl::FullyEncoded);
    if (!m_sandboxed || !m_bus.isConnected()) {
        m_opener(text);
        return;
    }
    QDBusMessage call = portalCall(QStringLiteral("OpenURI"));
    call << QString() << text << QVariantMap();
    m_bus.asyncCall(call);
}
