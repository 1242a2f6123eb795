pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// What a photo's cell offers under the pointer.
Item {
    id: controls

    required property mediaFile item
    required property AppState state

    ItemFlagButton {
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.margins: 8
        item: controls.item
        state: controls.state
    }
}
