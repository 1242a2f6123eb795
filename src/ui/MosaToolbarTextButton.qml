pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A text button of the toolbar.
MosaButtonBase {
    implicitHeight: 28
    horizontalPadding: 9
    font: MosaLook.system(12, Font.Medium)
    fill: Qt.rgba(1, 1, 1, 0.045)
    pressedFill: Qt.rgba(1, 1, 1, 0.12)
}
