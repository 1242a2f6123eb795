pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Mosa.App

// The program's commands in one menu, one group after the other.
Menu {
    id: root

    required property MenuCommands menuCommands

    padding: 5
    margins: 4
    implicitWidth: 250
    background: Rectangle {
        color: Qt.rgba(0.145, 0.145, 0.16, 0.98)
        radius: 9
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, 0.11)
    }

    Instantiator {
        model: root.menuCommands.commands
        delegate: MainMenuItem {
            required property MenuCommand modelData
            required property int index

            command: modelData
            startsGroup: index > 0 && root.menuCommands.commands[index - 1].menu !== modelData.menu
        }
        onObjectAdded: (index, object) => root.insertItem(index, object as Item)
        onObjectRemoved: (index, object) => root.removeItem(object as Item)
    }
}
