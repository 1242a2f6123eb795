pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic

AbstractButton {
    id: root

    property bool primary: false

    leftPadding: 18
    rightPadding: 18
    topPadding: 9
    bottomPadding: 9
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Text {
        text: root.text
        color: "white"
        font.pixelSize: 14
        font.weight: root.primary ? Font.DemiBold : Font.Medium
        horizontalAlignment: Text.AlignHCenter
    }
    background: Rectangle {
        radius: 8
        color: root.primary ? Qt.rgba(0.67, 0.20, 0.18, root.down ? 0.78 : 1) : Qt.rgba(1, 1, 1, root.down ? 0.12 : 0.075)
        border.width: root.visualFocus ? 2 : 0
        border.color: Qt.rgba(1, 1, 1, 0.7)
    }
}
