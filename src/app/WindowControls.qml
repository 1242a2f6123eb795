pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// Close, minimise, zoom and the menu, in the leading 76 points of the window's top 48.
Row {
    id: root

    required property MainWindow host
    property bool overPicture: false
    signal menuRequested

    x: 6
    height: 48

    WindowControl {
        anchors.verticalCenter: parent.verticalCenter
        overPicture: root.overPicture
        name: qsTr("Close")
        symbol: "window.close"
        hoverColor: Qt.rgba(0.67, 0.20, 0.18, 1)
        onActivated: root.host.close()
    }
    WindowControl {
        anchors.verticalCenter: parent.verticalCenter
        overPicture: root.overPicture
        name: qsTr("Minimise")
        symbol: "window.minimise"
        onActivated: root.host.minimise()
    }
    WindowControl {
        anchors.verticalCenter: parent.verticalCenter
        overPicture: root.overPicture
        name: qsTr("Zoom")
        Accessible.description: root.host.maximised ? qsTr("Maximised") : ""
        symbol: root.host.maximised ? "window.restore" : "window.zoom"
        onActivated: root.host.toggleMaximised()
    }
    WindowControl {
        anchors.verticalCenter: parent.verticalCenter
        overPicture: root.overPicture
        name: qsTr("Menu")
        disc: false
        symbol: "line.3.horizontal"
        symbolSize: 10
        onActivated: root.menuRequested()
        Accessible.role: Accessible.ButtonMenu
    }
}
