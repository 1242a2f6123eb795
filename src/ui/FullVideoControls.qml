pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Mosa.Playback
import Mosa.State
import Mosa.UI

/// The scrubber, the times and the buttons of the full-window video.
ColumnLayout {
    id: root

    required property mediaFile item
    required property AppState state
    required property FullVideoPlayer player

    readonly property MPVPlayerController controller: player.controller
    readonly property real position: controller?.position ?? 0
    readonly property real duration: controller?.duration ?? 0
    readonly property bool paused: controller?.paused ?? false

    spacing: 9

    ValueSlider {
        Layout.fillWidth: true
        current: root.position
        maximum: Math.max(root.duration, 0.01)
        Accessible.name: qsTr("Position")
        onEdited: value => root.controller?.seek(value)
    }

    RowLayout {
        spacing: 14

        MosaPlainButton {
            implicitWidth: 24
            implicitHeight: 26
            symbol: root.paused ? "play.fill" : "pause.fill"
            Accessible.name: root.paused ? qsTr("Play") : qsTr("Pause")
            onClicked: root.controller?.togglePause()
        }
        Text {
            text: root.player.timestamp(root.position)
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: MosaLook.monospaced(12)
            color: MosaLook.primary
        }
        MosaText {
            text: "/"
            color: MosaLook.tertiary
        }
        Text {
            text: root.player.timestamp(root.duration)
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: MosaLook.monospaced(12)
            color: MosaLook.primary
        }
        Text {
            Layout.fillWidth: true
            text: MosaLook.oneLine(root.item.url.lastPathComponent)
            textFormat: Text.PlainText
            horizontalAlignment: Text.AlignLeft
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            elide: Text.ElideMiddle
            maximumLineCount: 1
            font: MosaLook.body
            color: MosaLook.primary
        }
        MosaPlainButton {
            implicitHeight: 26
            symbol: "captions.bubble"
            toolTip: qsTr("Cycle Subtitles")
            onClicked: root.controller?.command(["cycle", "sub"])
        }
        MuteButton {
            implicitHeight: 26
            controller: root.controller
        }
        ValueSlider {
            Layout.preferredWidth: 90
            current: root.controller?.volume ?? 0
            maximum: 100
            Accessible.name: qsTr("Volume")
            onEdited: value => {
                if (root.controller)
                    root.controller.volume = value;
            }
        }
        ItemFlagButton {
            item: root.item
            state: root.state
        }
        MosaPlainButton {
            implicitHeight: 26
            symbol: "xmark"
            toolTip: qsTr("Close")
            onClicked: root.state.closeFullItem()
        }
    }
}
