pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Mosa.App

MenuItem {
    id: root

    required property MenuCommand command
    // A line above parts it from another menu's commands.
    required property bool startsGroup

    readonly property int gap: startsGroup ? 9 : 0

    implicitHeight: 28 + gap
    topPadding: gap
    bottomPadding: 0
    leftPadding: 11
    rightPadding: 11
    enabled: command.enabled
    text: command.title
    onTriggered: command.trigger()

    Accessible.role: Accessible.MenuItem
    Accessible.name: command.title
    Accessible.onPressAction: command.trigger()

    contentItem: Item {
        opacity: root.enabled ? 1 : 0.38

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.command.title
            color: "white"
            font.pixelSize: 13
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            text: root.command.shortcutText
            color: Qt.rgba(1, 1, 1, 0.5)
            font.pixelSize: 12
        }
    }

    background: Item {
        Rectangle {
            visible: root.startsGroup
            x: 8
            y: 4
            width: parent.width - 16
            height: 1
            color: Qt.rgba(1, 1, 1, 0.1)
        }
        Rectangle {
            y: root.gap
            width: parent.width
            height: parent.height - root.gap
            radius: 5
            color: root.highlighted && root.enabled ? Qt.rgba(1, 1, 1, 0.12) : "transparent"
        }
    }
}
