pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// The scroll bar of a list: there while the list is longer than its view, wider under the pointer.
T.ScrollBar {
    id: bar

    implicitWidth: 10
    padding: 2
    minimumSize: 0.08
    visible: size < 1
    hoverEnabled: true

    Accessible.ignored: !visible
    Accessible.name: qsTr("Scroll")

    contentItem: SmoothRectangle {
        implicitWidth: 6
        radius: width / 2
        color: Qt.rgba(1, 1, 1, bar.pressed ? 0.4 : bar.hovered ? 0.3 : 0.18)
    }
}
