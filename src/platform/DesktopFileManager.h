#pragma once

#include "FileManager.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>

/// FileManager over the session bus: the file manager interface of freedesktop.org, and inside a sandbox the
/// OpenURI portal. Outside a sandbox, and where the bus has no answer, a detached opener program.
class DesktopFileManager : public QObject, public FileManager {
    Q_OBJECT

public:
    /// Starts the program that opens the URI with its default application.
    using Opener = std::function<void(const QString &uri)>;

    explicit DesktopFileManager(QDBusConnection bus, Opener opener = runOpener,
                                bool sandboxed = isSandboxed(), QObject *parent = nullptr);

    void showInFileManager(const FileURL &url) override;
    void openInDefaultApp(const FileURL &url) override;
    void openUrl(const QUrl &url) override;

    static bool isSandboxed();
    static void runOpener(const QString &uri);

private:
    void openThroughPortal(const FileURL &url);

    QDBusConnection m_bus;
    Opener m_opener;
    bool m_sandboxed;
};
