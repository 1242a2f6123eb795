pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// One entry of a menu; checkable entries show their check mark before the text.
T.MenuItem {
    id: item

    property bool destructive: false
    /// The shortcut's text, shown after the entry's.
    property string shortcutText

    /// Follows triggered once the menu has closed: what opens now finds the focus where it was before the menu, and
    /// gives it back there.
    signal chosen
    onTriggered: Qt.callLater(chosen)

    readonly property bool leavesRoomForMark: {
        const siblings = item.menu;
        for (let i = 0; siblings && i < siblings.count; ++i) {
            if (siblings.itemAt(i)?.checkable === true)
                return true;
        }
        return checkable;
    }
    readonly property color foreground: highlighted && enabled ? "white" : destructive ? MosaLook.destructive : MosaLook.primary

    implicitWidth: row.implicitWidth + leftPadding + rightPadding
    implicitHeight: 26
    leftPadding: leavesRoomForMark ? 26 : 10
    rightPadding: 14
    font: MosaLook.body
    opacity: enabled ? 1 : MosaLook.disabledOpacity

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: if (item.enabled) item.clicked()
    Accessible.checkable: checkable
    Accessible.checked: checked

    contentItem: Item {
        id: row
        implicitWidth: label.implicitWidth + (shortcut.text !== "" ? shortcut.implicitWidth + 28 : 0)

        Text {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            font: item.font
            color: item.foreground
            textFormat: Text.PlainText
        }
        Text {
            id: shortcut
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: item.shortcutText
            font: item.font
            color: item.highlighted && item.enabled ? "white" : MosaLook.secondary
            textFormat: Text.PlainText
        }
    }
    indicator: SymbolIcon {
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        visible: item.checked
        name: "checkmark"
        size: 10
        weight: Font.DemiBold
        color: item.foreground
    }
    arrow: null
    background: SmoothRectangle {
        radius: 5
        color: item.highlighted && item.enabled ? MosaLook.mosaRed : "transparent"
    }
}
