#pragma once

#include "FolderCard.h"

#include <QList>

/// What one scan found in a folder. Media newest first, cards by name.
struct ScanResult {
    FileURL folder;
    QList<MediaFile> videos;
    QList<MediaFile> photos;
    QList<FolderCard> folders;
};
