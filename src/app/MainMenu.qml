pragma ComponentBehavior: Bound

import QtQml
import QtQuick
import Mosa.App
import Mosa.UI

// The program's commands in one menu, one group after the other.
MosaMenu {
    id: root

    required property MenuCommands menuCommands

    // A line before the item.
    function partFromAbove(item: Item): void {
        for (let i = 0; i < count; ++i) {
            if (itemAt(i) === item) {
                insertItem(i, separator.createObject(contentItem));
                return;
            }
        }
    }

    implicitWidth: 240

    Repeater {
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
        onItemAdded: (index, item) => {
            if (item.startsGroup)
                root.partFromAbove(item);
        }
    }

    Component {
        id: separator

        MosaMenuSeparator {}
    }
}
