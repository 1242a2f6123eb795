pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A row of a sheet's list: a symbol and a name, marked when it is the current one.
SmoothRectangle {
    id: row

    property string symbol
    property string name
    property bool current: false
    property bool emphasised: false
    property bool hovered: false

    signal clicked
    signal doubleClicked

    implicitHeight: 26
    radius: 6
    color: current ? (emphasised ? MosaLook.mosaRed : Qt.rgba(1, 1, 1, 0.12)) : hovered ? Qt.rgba(1, 1, 1, 0.05) : "transparent"

    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.selectable: true
    Accessible.selected: current
    Accessible.focusable: true
    Accessible.onPressAction: row.clicked()

    TapHandler {
        onTapped: row.clicked()
        onDoubleTapped: row.doubleClicked()
    }
    SymbolIcon {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        name: row.symbol
        size: 13
        color: row.current && row.emphasised ? "white" : MosaLook.secondary
    }
    Text {
        anchors.left: icon.right
        anchors.leftMargin: 7
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: MosaLook.oneLine(row.name)
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideMiddle
        font: MosaLook.body
        color: row.current && row.emphasised ? "white" : MosaLook.primary
    }
}
