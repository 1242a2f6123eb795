pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State

Item {
    id: root

    required property AppState state

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0.035, 0.035, 0.04, 1)
    }

    Text {
        anchors.centerIn: parent
        color: "white"
        text: root.state.isScanning ? "scanning" : "Mosa " + root.state.activeTab + (root.state.activeTab === MediaKind.Video)
    }
}
