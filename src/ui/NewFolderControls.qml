pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A button that turns into a field for the new folder's name: Return makes it, Escape leaves it.
Item {
    id: root

    property bool naming: false

    signal created(name: string)

    implicitWidth: naming ? 200 : button.implicitWidth
    implicitHeight: 28

    function finish(name: string): void {
        naming = false;
        if (name !== "") {
            created(name);
        } else {
            button.forceActiveFocus(Qt.OtherFocusReason);
        }
    }

    MosaPushButton {
        id: button

        visible: !root.naming
        text: qsTr("New Folder")
        onClicked: {
            root.naming = true;
            field.text = qsTr("New Folder");
            field.selectAll();
            field.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
    SheetTextField {
        id: field

        anchors.fill: parent
        visible: root.naming
        accessibleName: qsTr("Name of the new folder")
        Keys.onReturnPressed: root.finish(text)
        Keys.onEnterPressed: root.finish(text)
        Keys.onEscapePressed: root.finish("")
        onActiveFocusChanged: {
            if (!activeFocus) {
                root.naming = false;
            }
        }
    }
}
