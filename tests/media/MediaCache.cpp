#include "MediaCache.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

namespace MediaCache {

QByteArray fetch(const QString &name, const std::function<bool(const QString &)> &make) {
    const QDir cache(QStringLiteral(MOSA_TEST_MEDIA_CACHE));
    QFile kept(cache.filePath(name));
    if (kept.open(QIODevice::ReadOnly)) {
        return kept.readAll();
    }
    cache.mkpath(QStringLiteral("."));
    const QTemporaryDir workshop(cache.filePath(QStringLiteral("making-XXXXXX")));
    const QString path = workshop.filePath(QStringLiteral("medium.") + QFileInfo(name).suffix());
    if (!workshop.isValid() || !make(path)) {
        return {};
    }
    QFile made(path);
    QByteArray content;
    if (made.open(QIODevice::ReadOnly)) {
        content = made.readAll();
    }
    // Atomic, and no harm when another test was faster: the content is the same.
    QFile::rename(path, cache.filePath(name));
    return content;
}

bool run(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForStarted(30'000) || !process.waitForFinished(120'000) ||
        process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        qWarning().noquote() << program << arguments.join(u' ') << process.errorString()
                             << QString::fromLocal8Bit(process.readAll());
        return false;
    }
    return true;
}

QByteArray padded(QByteArray content, const QByteArray &extension, qint64 size) {
    constexpr qsizetype boxHeader = 8;
    const qsizetype missing = size - content.size();
    if (missing <= 0 || content.isEmpty()) {
        return content;
    }
    static const QList<QByteArray> boxed{"heic", "heif", "avif", "mp4", "m4v", "mov", "3gp"};
    if (!boxed.contains(extension)) {
        return content + QByteArray(missing, '\0');
    }
    QByteArray box(std::max(missing, boxHeader), '\0');
    qToBigEndian(quint32(box.size()), box.data());
    box.replace(4, 4, "free");
    return content + box;
}

} // namespace MediaCache
