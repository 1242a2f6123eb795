pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.State
import Mosa.UI

/// The videos in order, to be dragged or moved step by step. Up and down arrows go through the rows; with Alt
/// they move the current video.
ListView {
    id: view

    required property AppState state

    readonly property real rowHeight: 34
    /// While a row is dragged: which, its video's name, and where the pointer is in the view.
    property int draggedRow: -1
    property string draggedName
    property real pointerY: 0
    /// The gap between rows in which the dragged one would land, counted with it still in its place.
    readonly property int destination: Math.max(0, Math.min(count, Math.round((pointerY + contentY - originY) / rowHeight)))

    function drop(): void {
        const from = draggedRow;
        draggedRow = -1;
        if (from >= 0 && destination !== from && destination !== from + 1) {
            moveRow(from, destination);
        }
    }

    function step(row: int, offset: int): void {
        if (row + offset >= 0 && row + offset < count) {
            moveRow(row, offset < 0 ? row - 1 : row + 2);
        }
    }

    function moveRow(row: int, to: int): void {
        state.moveVideo(row, to);
        // The current row follows the move when the list is laid out; the next key may come before.
        forceLayout();
    }

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    // The rows are dragged; the list scrolls by wheel, touchpad and scroll bar.
    interactive: false
    reuseItems: true
    // Assistive technology would be told of rows beyond the edge as if they were to be seen.
    cacheBuffer: 0
    activeFocusOnTab: true
    highlightMoveDuration: 0
    currentIndex: 0
    model: VideoOrderModel {
        state: view.state
    }

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Videos")

    Keys.onPressed: event => {
        const offset = event.key === Qt.Key_Up ? -1 : event.key === Qt.Key_Down ? 1 : 0;
        event.accepted = offset !== 0;
        if (offset !== 0 && (event.modifiers & Qt.AltModifier)) {
            view.step(view.currentIndex, offset);
        } else if (offset !== 0) {
            view.currentIndex = Math.max(0, Math.min(view.count - 1, view.currentIndex + offset));
        }
    }

    move: Transition {
        NumberAnimation {
            property: "y"
            duration: MosaLook.lasting(140)
            easing.type: Easing.OutCubic
        }
    }
    moveDisplaced: move

    T.ScrollBar.vertical: MosaScrollBar {}
    RowHover {
        id: hover

        view: view
        rowHeight: view.rowHeight
    }
    WheelHandler {
        onWheel: event => {
            const distance = event.pixelDelta.y !== 0 ? event.pixelDelta.y : event.angleDelta.y / 120 * 3 * view.rowHeight;
            view.scrollBy(-distance);
        }
    }

    function scrollBy(distance: real): void {
        const end = Math.max(originY, originY + contentHeight - height);
        contentY = Math.max(originY, Math.min(end, contentY + distance));
    }

    // Near the edges the dragged row takes the list along, faster the nearer.
    FrameAnimation {
        id: autoscroll

        readonly property real zone: 44
        readonly property real pull: view.pointerY < zone ? view.pointerY - zone : Math.max(0, view.pointerY - view.height + zone)

        running: view.draggedRow >= 0 && pull !== 0
        onTriggered: view.scrollBy(Math.max(-90, Math.min(90, pull)) * 14 * frameTime)
    }

    delegate: ArrangeVideosRow {
        required property int index

        width: view.width
        height: view.rowHeight
        position: index
        count: view.count
        current: view.activeFocus && ListView.isCurrentItem
        dimmed: view.draggedRow === index
        hovered: hover.row === index && view.draggedRow < 0
        onUp: view.step(index, -1)
        onDown: view.step(index, 1)
        onPressed: {
            view.currentIndex = index;
            view.forceActiveFocus(Qt.MouseFocusReason);
        }
        onDragStarted: {
            view.draggedName = name;
            view.draggedRow = index;
        }
        onDragMoved: y => view.pointerY = mapToItem(view, 0, y).y
        onDragEnded: view.drop()
    }

    Rectangle {
        // Where the dragged row would land.
        parent: view
        z: 4
        visible: view.draggedRow >= 0
        x: 8
        width: view.width - 16
        y: view.originY + view.destination * view.rowHeight - view.contentY - 1
        height: 2
        radius: 1
        color: MosaLook.mosaRed
    }
    SmoothRectangle {
        // What is dragged, under the pointer.
        parent: view
        z: 3
        visible: view.draggedRow >= 0
        x: 6
        y: Math.max(0, Math.min(view.height - height, view.pointerY - height / 2))
        width: view.width - 12
        height: view.rowHeight
        radius: 7
        color: MosaLook.menuMaterial
        borderColor: MosaLook.hairline
        borderWidth: 1
        shadowColor: Qt.rgba(0, 0, 0, 0.5)
        shadowRadius: 14
        shadowOffset: 4

        Text {
            // Where the row has it.
            anchors.left: parent.left
            anchors.leftMargin: 40
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            text: MosaLook.oneLine(view.draggedName)
            textFormat: Text.PlainText
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideMiddle
            font: MosaLook.body
            color: MosaLook.primary
        }
    }
}
