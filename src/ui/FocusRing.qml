pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// Surrounds the control that has the keyboard's focus; shown only when the focus came by keyboard.
SmoothRectangle {
    id: ring

    required property Item control
    property bool shown: control.visualFocus === true
    property real distance: 3
    property real cornerRadius: 6

    anchors.fill: parent
    anchors.margins: -distance
    visible: shown
    radius: cornerRadius + distance
    borderColor: MosaLook.focusRing
    borderWidth: 2
}
