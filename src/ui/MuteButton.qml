pragma ComponentBehavior: Bound

import QtQuick
import Mosa.Playback
import Mosa.UI

/// Mutes and unmutes a player, and tells whether and where it is heard.
MosaPlainButton {
    id: button

    required property MPVPlayerController controller

    readonly property bool muted: controller?.isMuted ?? true
    readonly property string output: controller?.audioOutput ?? ""

    symbol: muted ? "speaker.slash.fill" : "speaker.wave.2.fill"
    Accessible.name: muted ? qsTr("Unmute") : qsTr("Mute")
    Accessible.description: muted ? qsTr("Audio off") : output === "" ? qsTr("Audio on") : qsTr("Audio on") + " · " + output
    onClicked: controller?.toggleMute()
}
