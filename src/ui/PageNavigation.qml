pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// Turns the pages of the grid.
Row {
    id: navigation

    required property AppState state
    required property int pageCount

    spacing: 5

    MosaToolbarButton {
        symbol: "chevron.left"
        Accessible.name: qsTr("Previous Page")
        onClicked: navigation.state.page = Math.max(navigation.state.page - 1, 0)
    }
    MosaText {
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(54, Math.ceil(implicitWidth))
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("%1 / %2").arg(Math.min(navigation.state.page + 1, navigation.pageCount)).arg(navigation.pageCount)
        font: MosaLook.monospaced(12)
        color: MosaLook.secondary
    }
    MosaToolbarButton {
        symbol: "chevron.right"
        Accessible.name: qsTr("Next Page")
        onClicked: navigation.state.page = Math.min(navigation.state.page + 1, navigation.pageCount - 1)
    }
}
