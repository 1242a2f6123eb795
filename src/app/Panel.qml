pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import QtQuick.Controls.Basic

// A small panel over the middle of the window, for what the program says about itself.
Popup {
    id: root

    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    focus: true
    padding: 24
    closePolicy: Popup.CloseOnEscape
    background: Rectangle {
        color: Qt.rgba(0.125, 0.125, 0.14, 1)
        radius: 12
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, 0.1)
    }
    Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.45)
    }
}
