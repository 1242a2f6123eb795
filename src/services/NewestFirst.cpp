#include "NewestFirst.h"

void sortNewestFirst(QList<MediaFile> &) {}

void sortByName(QList<FolderCard> &) {}
