pragma ComponentBehavior: Bound

import QtQuick
import Mosa.Playback

/// A running preview. Until the first frame of the video has been drawn the cell keeps the still picture on top.
Item {
    id: root

    required property MPVPlayerController controller

    readonly property bool playing: controller?.hasRenderedFrame ?? false

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Video preview")
    Accessible.description: playing ? qsTr("Preview playing") : qsTr("Preparing preview")

    MPVVideoSurface {
        anchors.fill: parent
        controller: root.controller
    }
}
