pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

// Close, minimise, zoom and the menu, in the leading 76 points of the window's top 48.
Row {
    id: root

    required property MainWindow host
    signal menuRequested

    x: 6
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
        Accessible.description: root.host.maximised ? qsTr("Maximised") : ""
        glyph: root.host.maximised ? "M 4.2 4.2 L 7.8 4.2 L 7.8 7.8 L 4.2 7.8 Z" : "M 3.8 6 L 8.2 6 M 6 3.8 L 6 8.2"
        onActivated: root.host.toggleMaximised()
    }
    WindowControl {
        anchors.verticalCenter: parent.verticalCenter
        name: qsTr("Menu")
        circle: false
        glyph: "M 2 3 L 10 3 M 2 6 L 10 6 M 2 9 L 10 9"
        onActivated: root.menuRequested()
        Accessible.role: Accessible.ButtonMenu
    }
}
