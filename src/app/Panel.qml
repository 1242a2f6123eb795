pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// A small panel over the middle of the window, for what the program says about itself. Its title is its name for
/// assistive technology.
T.Dialog {
    id: root

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    modal: true
    dim: true
    focus: true
    padding: 24
    closePolicy: T.Popup.CloseOnEscape
    background: SmoothRectangle {
        color: Qt.rgba(MosaLook.menuMaterial.r, MosaLook.menuMaterial.g, MosaLook.menuMaterial.b, 1)
        radius: 12
        borderColor: MosaLook.hairline
        borderWidth: 1
        shadowColor: Qt.rgba(0, 0, 0, 0.5)
        shadowRadius: 30
        shadowOffset: 10
    }
    T.Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.45)
    }
}
