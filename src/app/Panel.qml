pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.Basic
import Mosa.UI

// A small panel over the middle of the window, for what the program says about itself.
Popup {
    id: root

    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    focus: true
    padding: 24
    closePolicy: Popup.CloseOnEscape
    background: SmoothRectangle {
        color: MosaLook.menuMaterial
        radius: 12
        borderColor: MosaLook.hairline
        borderWidth: 1
        shadowColor: Qt.rgba(0, 0, 0, 0.5)
        shadowRadius: 30
        shadowOffset: 10
    }
    Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.45)
    }
}
