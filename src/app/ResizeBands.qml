pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// The edges by which a window without a desktop frame is resized.
Item {
    id: root

    required property MainWindow host
    readonly property int band: 5
    readonly property int corner: 14

    component Band: MouseArea {
        required property int edges

        acceptedButtons: Qt.LeftButton
        hoverEnabled: true
        preventStealing: true
        onPressed: root.host.resizeAt(edges)
    }

    Band {
        edges: Qt.TopEdge
        cursorShape: Qt.SizeVerCursor
        width: parent.width
        height: root.band
    }
    Band {
        edges: Qt.BottomEdge
        cursorShape: Qt.SizeVerCursor
        anchors.bottom: parent.bottom
        width: parent.width
        height: root.band
    }
    Band {
        edges: Qt.LeftEdge
        cursorShape: Qt.SizeHorCursor
        width: root.band
        height: parent.height
    }
    Band {
        edges: Qt.RightEdge
        cursorShape: Qt.SizeHorCursor
        anchors.right: parent.right
        width: root.band
        height: parent.height
    }

    // Each corner is two short bands, so that it is easy to hit and covers nothing of the scene.
    Repeater {
        model: [Qt.TopEdge | Qt.LeftEdge, Qt.TopEdge | Qt.RightEdge, Qt.BottomEdge | Qt.LeftEdge, Qt.BottomEdge | Qt.RightEdge]

        Item {
            id: cornerItem

            required property int modelData
            readonly property bool atLeft: (modelData & Qt.LeftEdge) !== 0
            readonly property bool atTop: (modelData & Qt.TopEdge) !== 0
            readonly property int cursor: atLeft === atTop ? Qt.SizeFDiagCursor : Qt.SizeBDiagCursor

            x: atLeft ? 0 : root.width - width
            y: atTop ? 0 : root.height - height
            width: root.corner
            height: root.corner

            Band {
                edges: cornerItem.modelData
                cursorShape: cornerItem.cursor
                y: cornerItem.atTop ? 0 : parent.height - height
                width: parent.width
                height: root.band
            }
            Band {
                edges: cornerItem.modelData
                cursorShape: cornerItem.cursor
                x: cornerItem.atLeft ? 0 : parent.width - width
                width: root.band
                height: parent.height
            }
        }
    }
}
