pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

// Close, minimise and zoom, in the leading 76 points of the window's top 48.
Row {
    id: root

    required property MainWindow host

    x: 8
    height: 48

    WindowControl {
        anchors.verticalCenter: parent.verticalCenter
        name: qsTr("Close")
        glyph: "M 4 4 L 8 8 M 8 4 L 4 8"
        hoverColor: Qt.rgba(0.67, 0.20, 0.18, 1)
        onActivated: root.host.close()
    }
    WindowControl {
        anchors.verticalCenter: parent.verticalCenter
        name: qsTr("Minimise")
        glyph: "M 3.6 6 L 8.4 6"
        onActivated: root.host.minimise()
    }
    WindowControl {
        anchors.verticalCenter: parent.verticalCenter
        name: qsTr("Zoom")
        glyph: root.host.maximised ? "M 4 6 L 8 6 M 6 4 L 6 8" : "M 3.8 6 L 8.2 6 M 6 3.8 L 6 8.2"
        onActivated: root.host.toggleMaximised()
    }
}
