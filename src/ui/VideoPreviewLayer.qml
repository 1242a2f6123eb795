pragma ComponentBehavior: Bound

import QtQuick
import Mosa.Playback
import Mosa.State
import Mosa.UI

/// A running preview, under the item's still picture until the first frame of the video has been drawn.
Item {
    id: root

    required property mediaFile item
    required property MPVPlayerController controller

    readonly property bool playing: controller?.hasRenderedFrame ?? false

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Video preview")
    Accessible.description: playing ? qsTr("Preview playing") : qsTr("Preparing preview")

    MPVVideoSurface {
        anchors.fill: parent
        controller: root.controller
    }

    MediaThumbnail {
        anchors.fill: parent
        item: root.item
        visible: !root.playing
    }
}
