pragma ComponentBehavior: Bound

import QtQuick
import Mosa.Playback
import Mosa.State
import Mosa.UI

/// The controls over a video cell whose preview plays.
Item {
    id: root

    required property mediaFile item
    required property AppState state
    required property MPVPlayerController controller

    readonly property real duration: controller?.duration ?? 0

    readonly property color disc: Qt.rgba(0, 0, 0, 0.65)

    MosaPlainButton {
        id: removeButton

        anchors { left: parent.left; leftMargin: 8; verticalCenter: flag.verticalCenter }
        implicitWidth: 24
        implicitHeight: 24
        cornerRadius: 12
        fill: root.disc
        foreground: "white"
        symbol: "xmark"
        toolTip: qsTr("Remove from Grid")
        onClicked: root.state.hideVideo(root.item)
    }

    MuteButton {
        anchors { left: removeButton.right; leftMargin: 8; verticalCenter: flag.verticalCenter }
        implicitWidth: 24
        implicitHeight: 24
        cornerRadius: 12
        fill: root.disc
        foreground: "white"
        controller: root.controller
        toolTip: muted ? qsTr("Unmute") : qsTr("Mute")
    }

    ItemFlagButton {
        id: flag

        anchors { right: parent.right; top: parent.top; margins: 8 }
        item: root.item
        state: root.state
    }

    ValueSlider {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 8 }
        visible: root.duration > 0
        current: root.controller?.position ?? 0
        maximum: root.duration
        stepSize: 5
        Accessible.name: qsTr("Position")
        onEdited: value => root.controller?.seek(value)
    }
}
