pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// The subfolders to descend into, side by side.
Item {
    id: strip

    required property list<folderCard> folders
    signal opened(card: folderCard)

    implicitHeight: 80

    Rectangle {
        anchors.fill: parent
        color: MosaLook.faded(MosaLook.mosaPanel, 0.62)
    }

    ListView {
        id: list
        anchors.fill: parent
        orientation: ListView.Horizontal
        spacing: 8
        leftMargin: 8
        rightMargin: 8
        model: strip.folders
        boundsBehavior: Flickable.StopAtBounds
        delegate: FolderCardButton {
            required property int index

            y: 7
            onClicked: strip.opened(card)
            onActiveFocusChanged: if (activeFocus)
                list.positionViewAtIndex(index, ListView.Contain)
        }

        // A plain wheel turns vertically, yet the only way to go here is sideways.
        WheelHandler {
            acceptedDevices: PointerDevice.Mouse
            orientation: Qt.Vertical
            onWheel: event => {
                const start = list.originX - list.leftMargin;
                const end = Math.max(start, list.originX + list.contentWidth + list.rightMargin - list.width);
                list.contentX = Math.max(start, Math.min(end, list.contentX - event.angleDelta.y));
            }
        }
    }

    MosaDivider {
        anchors.bottom: parent.bottom
        width: parent.width
        opacity: 0.4
    }
}
