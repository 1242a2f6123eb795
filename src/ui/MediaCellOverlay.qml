// Not bound: the Loader of Qt 6.4 refuses bound components.

import QtQuick
import Mosa.UI

/// What lies over a cell's picture under the pointer and with the keyboard's focus: its controls, on a shade that
/// keeps them readable.
Item {
    id: overlay

    required property bool focusShown
    default property alias controls: content.data

    Rectangle {
        width: parent.width
        height: Math.ceil(parent.height / 2)
        anchors.bottom: parent.bottom
        gradient: Gradient {
            GradientStop {
                position: 0
                color: "transparent"
            }
            GradientStop {
                position: 1
                color: Qt.rgba(0, 0, 0, 0.72)
            }
        }
    }
    Item {
        id: content
        anchors.fill: parent
    }
    // Inside the cell: its neighbours are only a few points away.
    SmoothRectangle {
        anchors.fill: parent
        visible: overlay.focusShown
        radius: 2
        borderWidth: 3
        borderColor: MosaLook.focusRing
    }
}
