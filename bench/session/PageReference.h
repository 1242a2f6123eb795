#pragma once

#include "ScanInput.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// What the parts of showing a folder's first page cost when plain loops do them one after the other, in
/// milliseconds.
namespace PageReference {

/// Walking the folder and asking each of its files for its size.
double scan(const ScanInput::Library &library, const FileURL &folder);
/// Making the pictures of these files (native paths).
double pictures(const QList<QByteArray> &files);
/// Reading them from the cache below this directory.
double cachedPictures(const QList<QByteArray> &files, const QString &cacheHome);

} // namespace PageReference
