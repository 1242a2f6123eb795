pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A button beside the primary one.
MosaButtonBase {
    horizontalPadding: 18
    verticalPadding: 9
    font: MosaLook.system(14, Font.Medium)
    fill: Qt.rgba(1, 1, 1, 0.075)
    pressedFill: Qt.rgba(1, 1, 1, 0.12)
    cornerRadius: 8
}
