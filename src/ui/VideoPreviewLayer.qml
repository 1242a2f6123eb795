// Not bound: the Loader of Qt 6.4 refuses bound components.

import QtQuick
import Mosa.Playback
import Mosa.State
import Mosa.UI

/// A running preview, under the item's still picture until the first frame of the video has been drawn.
///
/// A cell that shows that picture already keeps its own on top for as long: another one would have to be fetched first.
Item {
    id: root

    required property mediaFile item
    required property MPVPlayerController controller

    property bool bringsThumbnail: true

    readonly property bool playing: controller?.hasRenderedFrame ?? false

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Video preview")
    Accessible.description: playing ? qsTr("Preview playing") : qsTr("Preparing preview")

    MPVVideoSurface {
        anchors.fill: parent
        controller: root.controller
    }

    Loader {
        anchors.fill: parent
        active: root.bringsThumbnail && !root.playing
        sourceComponent: MediaThumbnail {
            item: root.item
        }
    }
}
