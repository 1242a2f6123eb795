#include "ChooserPlaces.h"

#include "BackgroundTask.h"
#include "FileURL.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace ChooserPlaces {

namespace {

QVariantMap place(const QString &name, const QString &path, const QString &symbol) {
    return {
        {QStringLiteral("name"), name}, {QStringLiteral("path"), path}, {QStringLiteral("symbol"), symbol}};
}

QString translated(const char *text) {
    return QCoreApplication::translate("ChooserPlaces", text);
}

void addOwnFolders(QVariantList &places) {
    const QString home = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    places.append(
        place(translated(QT_TRANSLATE_NOOP("ChooserPlaces", "Home")), home, QStringLiteral("folder.fill")));
    for (const auto location :
         {QStandardPaths::DesktopLocation, QStandardPaths::PicturesLocation, QStandardPaths::MoviesLocation,
          QStandardPaths::DownloadLocation, QStandardPaths::DocumentsLocation}) {
        const QString path = QStandardPaths::writableLocation(location);
        // A location that the user has not set up is the home folder.
        if (path != home && QFileInfo(path).isDir()) {
            places.append(place(FileURL::fromPath(path).lastPathComponent(), path, QStringLiteral("folder")));
        }
    }
}

/// "\040" for a space and so on, as the kernel writes them.
QByteArray unescaped(const QByteArray &text) {
    QByteArray plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        bool octal = false;
        const int code = text[i] == '\\' ? text.mid(i + 1, 3).toInt(&octal, 8) : 0;
        plain += octal ? char(code) : text[i];
        i += octal ? 3 : 0;
    }
    return plain;
}

/// From the kernel's own list: asking a drive itself could take for ever.
void addDrives(QVariantList &places) {
    QFile mounts(QStringLiteral("/proc/self/mounts"));
    if (!mounts.open(QIODevice::ReadOnly)) {
        return;
    }
    const QList<QByteArray> lines = mounts.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray path = unescaped(line.split(' ').value(1));
        if (path.startsWith("/media/") || path.startsWith("/run/media/") || path.startsWith("/mnt/")) {
            const FileURL drive = FileURL::directory(path);
            places.append(place(drive.lastPathComponent(), drive.path(), QStringLiteral("folder")));
        }
    }
}

} // namespace

QFuture<QVariantList> find() {
    return BackgroundTask::run<QVariantList>([](QPromise<QVariantList> &promise) {
        QVariantList places;
        addOwnFolders(places);
        addDrives(places);
        places.append(place(translated(QT_TRANSLATE_NOOP("ChooserPlaces", "Computer")), QStringLiteral("/"),
                            QStringLiteral("folder")));
        promise.addResult(places);
    });
}

} // namespace ChooserPlaces
