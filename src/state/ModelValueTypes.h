#pragma once

#include "FileURL.h"
#include "FolderCard.h"
#include "MediaFile.h"
#include "MediaKind.h"

#include <QtQml/qqml.h>

// The plain records under the names that QML knows them by; the records themselves stay free of QML.

struct FileURLForeign {
    Q_GADGET
    QML_FOREIGN(FileURL)
    QML_VALUE_TYPE(fileURL)
};

struct MediaFileForeign {
    Q_GADGET
    QML_FOREIGN(MediaFile)
    QML_VALUE_TYPE(mediaFile)
};

struct FolderCardForeign {
    Q_GADGET
    QML_FOREIGN(FolderCard)
    QML_VALUE_TYPE(folderCard)
};

struct MediaKindForeign {
    Q_GADGET
    QML_FOREIGN(MediaKinds)
    QML_NAMED_ELEMENT(MediaKind)
    QML_UNCREATABLE("a set of names")
};
