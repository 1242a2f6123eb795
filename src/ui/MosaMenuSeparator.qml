pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// The line between groups of a menu's entries.
T.MenuSeparator {
    implicitWidth: 40
    implicitHeight: 11

    contentItem: Item {
        Rectangle {
            x: 9
            width: parent.width - 18
            height: 1
            anchors.verticalCenter: parent.verticalCenter
            color: MosaLook.separator
        }
    }
}
