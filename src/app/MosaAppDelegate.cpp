#include "MosaAppDelegate.h"

#include "ApplicationIdentity.h"
#include "NotificationCentre.h"
#include "NotificationNames.h"

#include <QGuiApplication>
#include <QIcon>

void MosaAppDelegate::applicationWillFinishLaunching() {
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Mosa"));
    QGuiApplication::setDesktopFileName(ApplicationIdentity::applicationId);
    QGuiApplication::setWindowIcon(QIcon::fromTheme(ApplicationIdentity::applicationId,
                                                    QIcon(QStringLiteral(":/qt/qml/Mosa/UI/Mosa-Icon.svg"))));
    QGuiApplication::setQuitOnLastWindowClosed(applicationShouldTerminateAfterLastWindowClosed());
}

void MosaAppDelegate::applicationOpen(const QList<FileURL> &urls) {
    if (urls.isEmpty()) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [url = urls.constFirst()] {
            NotificationCentre::defaultCentre().post(NotificationNames::mosaOpenFolder,
                                                     QVariant::fromValue(url));
        },
        Qt::QueuedConnection);
}
