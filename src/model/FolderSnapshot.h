#pragma once

#include "FolderCard.h"

#include <QList>
#include <QSet>

/// How a folder stood on screen when another one was opened; what going back restores.
struct FolderSnapshot {
    FileURL folder;
    QList<MediaFile> videos;
    QList<MediaFile> photos;
    QList<FolderCard> folders;
    MediaKind activeTab = MediaKind::video;
    int page = 0;
    QSet<FileURL> flags;
    QSet<FileURL> hiddenVideos;
};
