pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// One video of the arrange sheet: its position, its name and the arrows that move it by one.
Item {
    id: row

    required property string videoId
    required property string name
    property int position: 0
    property int count: 0
    property bool current: false
    property bool dimmed: false
    property bool hovered: false

    signal up
    signal down
    signal pressed
    signal dragStarted
    signal dragMoved(y: real)
    signal dragEnded

    opacity: dimmed ? 0.45 : 1

    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: String(position + 1)
    Accessible.selectable: true
    Accessible.selected: current
    Accessible.onPressAction: row.pressed()

    SmoothRectangle {
        anchors.fill: parent
        anchors.margins: 1
        radius: 6
        color: row.current ? Qt.rgba(1, 1, 1, 0.12) : row.hovered ? Qt.rgba(1, 1, 1, 0.05) : "transparent"
    }
    TapHandler {
        onPressedChanged: {
            if (pressed) {
                row.pressed();
            }
        }
    }
    DragHandler {
        target: null
        dragThreshold: 4
        cursorShape: Qt.ClosedHandCursor
        onActiveChanged: {
            if (active) {
                row.dragStarted();
                row.dragMoved(centroid.position.y);
            } else {
                row.dragEnded();
            }
        }
        onCentroidChanged: {
            if (active) {
                row.dragMoved(centroid.position.y);
            }
        }
    }

    Text {
        id: number

        anchors.left: parent.left
        anchors.leftMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        width: 30
        horizontalAlignment: Text.AlignRight
        text: row.position + 1
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 7
        font: MosaLook.monospaced(11)
        color: MosaLook.secondary
    }
    Text {
        anchors.left: number.right
        anchors.leftMargin: 10
        anchors.right: upButton.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        text: MosaLook.oneLine(row.name)
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideMiddle
        maximumLineCount: 1
        font: MosaLook.body
        color: MosaLook.primary
    }
    MosaPlainButton {
        id: upButton

        anchors.right: downButton.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 26
        symbol: "chevron.up"
        symbolSize: 12
        focusPolicy: Qt.NoFocus
        takesFocus: false
        enabled: row.position > 0
        toolTip: qsTr("Move Up")
        onClicked: row.up()
    }
    MosaPlainButton {
        id: downButton

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 26
        symbol: "chevron.down"
        symbolSize: 12
        focusPolicy: Qt.NoFocus
        takesFocus: false
        enabled: row.position < row.count - 1
        toolTip: qsTr("Move Down")
        onClicked: row.down()
    }
}
