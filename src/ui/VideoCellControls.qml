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

    readonly property real gap: 8
    /// The buttons stand in a row. What finds no room in it, in the cell of an upright video, comes below the others.
    readonly property bool muteInRow: width >= removeButton.width + muteButton.width + flag.width + 4 * gap
    readonly property bool flagInRow: width >= removeButton.width + flag.width + 3 * gap

    MosaPlainButton {
        id: removeButton

        x: root.gap
        y: root.gap + (flag.height - height) / 2
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
        id: muteButton

        x: root.muteInRow ? removeButton.x + removeButton.width + root.gap : removeButton.x
        y: root.muteInRow ? removeButton.y : removeButton.y + removeButton.height + root.gap
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

        x: root.flagInRow ? root.width - width - root.gap : muteButton.x + (muteButton.width - width) / 2
        y: root.flagInRow ? root.gap : muteButton.y + muteButton.height + root.gap
        item: root.item
        state: root.state
    }

    ValueSlider {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 8 }
        visible: root.duration > 0
        current: root.controller?.position ?? 0
        maximum: root.duration
        Accessible.name: qsTr("Position")
        onEdited: value => root.controller?.seek(value)
    }
}
