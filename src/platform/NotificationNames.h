#pragma once

#include <QString>

/// What the default NotificationCentre carries, by name.
namespace NotificationNames {

/// A folder that the desktop asks the program to open; the object is its FileURL.
inline const QString mosaOpenFolder = QStringLiteral("MosaOpenFolder");
/// The space key while a video fills the window; no object.
inline const QString mosaTogglePlayback = QStringLiteral("MosaTogglePlayback");
/// A cell is about to start its inline preview; the object is its path, a QString.
inline const QString mosaPreviewClaimed = QStringLiteral("MosaPreviewClaimed");

/// The main window's way into and out of full screen, whoever asked for it; no object. "Will" comes before
/// the window changes when the program asks, and just before "did" when the desktop does.
inline const QString windowWillEnterFullScreen = QStringLiteral("MosaWindowWillEnterFullScreen");
inline const QString windowDidEnterFullScreen = QStringLiteral("MosaWindowDidEnterFullScreen");
inline const QString windowWillExitFullScreen = QStringLiteral("MosaWindowWillExitFullScreen");
inline const QString windowDidExitFullScreen = QStringLiteral("MosaWindowDidExitFullScreen");

} // namespace NotificationNames
