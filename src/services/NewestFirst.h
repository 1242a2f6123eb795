#pragma once

#include "FolderCard.h"

#include <QList>

/// The order in which media are browsed: later addedAt first, equal dates by file name under the natural
/// collation (case-insensitive, digit runs by value). Stable.
void sortNewestFirst(QList<MediaFile> &files);

/// Cards by name under the same collation. Stable.
void sortByName(QList<FolderCard> &cards);
