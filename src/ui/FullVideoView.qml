pragma ComponentBehavior: Bound

import QtQuick
import Mosa.Playback
import Mosa.State
import Mosa.UI

/// Plays one video over the whole window, with its controls along the bottom edge.
Item {
    id: root

    required property mediaFile item
    required property AppState state

    readonly property MPVPlayerController controller: player.controller
    /// In percent of the height from the top: subtitles end above the control bar.
    readonly property int subtitleEnd: height > bar.height ? Math.floor(100 * (height - bar.height) / height) : 100

    function placeSubtitles(): void {
        controller?.setProperty("sub-pos", String(subtitleEnd));
    }

    onSubtitleEndChanged: placeSubtitles()
    onControllerChanged: placeSubtitles()

    FullVideoPlayer {
        id: player
        item: root.item
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
    }

    MPVVideoSurface {
        anchors.fill: parent
        controller: root.controller
    }

    MouseArea {
        anchors.fill: parent
        onDoubleClicked: root.state.closeFullItem()
    }

    Rectangle {
        id: bar

        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: controls.implicitHeight + 24
        color: MosaLook.ultraThinMaterial

        Rectangle {
            width: parent.width
            height: 1
            color: MosaLook.hairline
        }

        // What misses a control is not meant for the video.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            hoverEnabled: true
            onWheel: wheel => wheel.accepted = true
        }

        FullVideoControls {
            id: controls

            anchors { fill: parent; margins: 12 }
            item: root.item
            state: root.state
            player: player
        }
    }
}
