pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A standard push button, as sheets and alerts use it: plain, the default one, or destructive.
MosaButtonBase {
    property bool isDefault: false
    property bool destructive: false

    // Return goes on meaning the default button.
    takesFocus: false

    implicitHeight: 28
    implicitWidth: Math.max(72, implicitContentWidth + leftPadding + rightPadding)
    horizontalPadding: 14
    font: MosaLook.system(13, isDefault ? Font.Medium : Font.Normal)
    foreground: isDefault ? "white" : destructive ? MosaLook.destructive : MosaLook.primary
    fill: isDefault ? MosaLook.mosaRed : Qt.rgba(1, 1, 1, 0.1)
    pressedFill: isDefault ? MosaLook.faded(MosaLook.mosaRed, 0.78) : Qt.rgba(1, 1, 1, 0.17)
    cornerRadius: 7
}
