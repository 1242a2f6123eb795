pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// Stands in for the grid while a folder is scanned.
Item {
    id: scanning

    required property AppState state

    Column {
        anchors.centerIn: parent
        spacing: 12

        MosaSpinner {
            anchors.horizontalCenter: parent.horizontalCenter
            size: 32
        }
        MosaText {
            width: Math.min(Math.ceil(implicitWidth), scanning.width - 48)
            anchors.horizontalCenter: parent.horizontalCenter
            text: scanning.state.statusMessage ?? qsTr("Scanning folder…")
            color: MosaLook.secondary
            elide: Text.ElideMiddle
        }
    }
}
