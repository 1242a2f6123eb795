#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// Where made media wait for the next test. Several tests may fill it at once.
namespace MediaCache {

/// The bytes kept under the name; when there are none, make(path) writes them to the path, whose extension is
/// the name's, and they are kept. Empty when that failed.
QByteArray fetch(const QString &name, const std::function<bool(const QString &path)> &make);

/// Runs a program to its end. False, with its messages as a warning, unless it succeeds.
bool run(const QString &program, const QStringList &arguments);

/// Lengthens the content to the size with bytes that its format passes over.
QByteArray padded(QByteArray content, const QByteArray &extension, qint64 size);

} // namespace MediaCache
