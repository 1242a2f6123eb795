pragma ComponentBehavior: Bound

import QtQuick
import Mosa.App
import Mosa.UI

// The program's commands in one menu, one group after the other.
MosaMenu {
    id: root

    required property MenuCommands menuCommands

    implicitWidth: 240

    Instantiator {
        model: root.menuCommands.commands
        delegate: MosaMenuItem {
            required property MenuCommand modelData
            required property int index
            readonly property bool startsGroup: index > 0 && root.menuCommands.commands[index - 1].menu !== modelData.menu

            enabled: modelData.enabled
            text: modelData.title
            shortcutText: modelData.shortcutText
            onTriggered: modelData.trigger()
            Accessible.onPressAction: modelData.trigger()
        }
        onObjectAdded: (index, object) => {
            const item = object as MosaMenuItem;
            if (item.startsGroup)
                root.addItem(separator.createObject(root.contentItem));
            root.addItem(item);
        }
    }

    Component {
        id: separator

        MosaMenuSeparator {}
    }
}
