#pragma once

#include <QString>

/// Object: the URL of a folder or file that the desktop asked the program to open.
inline const QString mosaOpenFolder = QStringLiteral("MosaOpenFolder");
/// No object: plays or pauses the video that is open full-window.
inline const QString mosaTogglePlayback = QStringLiteral("MosaTogglePlayback");
/// Object: the path, as text, of the item whose cell is about to start its preview.
inline const QString mosaPreviewClaimed = QStringLiteral("MosaPreviewClaimed");
