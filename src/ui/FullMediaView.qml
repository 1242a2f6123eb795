// Not bound: the Loader of Qt 6.4 refuses bound components.

import QtQuick
import Mosa.State
import Mosa.UI

/// One item over the whole window. Another item gets a viewer of its own, with nothing of the one before.
Item {
    id: root

    required property mediaFile item
    required property AppState state

    readonly property string identity: item.id

    function showItem(): void {
        viewer.sourceComponent = null;
        viewer.sourceComponent = item.kind === MediaKind.Video ? video : photo;
    }

    onIdentityChanged: showItem()
    Component.onCompleted: showItem()

    Rectangle {
        anchors.fill: parent
        color: "black"
    }

    Loader {
        id: viewer
        anchors.fill: parent
    }

    Component {
        id: video

        FullVideoView {
            item: root.item
            state: root.state
        }
    }

    Component {
        id: photo

        FullPhotoView {
            item: root.item
            state: root.state
        }
    }
}
