pragma ComponentBehavior: Bound

import QtQuick
import Mosa.App
import Mosa.UI

/// The program's commands in one menu, one group after the other.
MosaMenu {
    id: root

    required property MenuCommands menuCommands

    title: qsTr("Menu")
    implicitWidth: 240

    // Made once and in order: a repeater would put its entries before the lines between the groups.
    Component.onCompleted: {
        const commands = menuCommands.commands;
        for (let i = 0; i < commands.length; ++i) {
            if (i > 0 && commands[i - 1].menu !== commands[i].menu)
                addItem(separator.createObject(contentItem) as Item);
            addItem(entry.createObject(contentItem, {
                command: commands[i]
            }) as Item);
        }
    }

    Component {
        id: entry

        MosaMenuItem {
            required property MenuCommand command

            enabled: command.enabled
            text: command.title
            shortcutText: command.shortcutText
            onChosen: command.trigger()
        }
    }
    Component {
        id: separator

        MosaMenuSeparator {}
    }
}
