pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// Stands in for the grid when there is nothing to show.
Item {
    id: empty

    required property AppState state

    Column {
        anchors.centerIn: parent
        spacing: 12

        SymbolIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            name: empty.state.viewFlaggedOnly ? "flag.slash" : "film.stack"
            size: 42
            weight: Font.Light
            color: MosaLook.tertiary
        }
        MosaText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: empty.state.viewFlaggedOnly ? qsTr("No flagged items in this view") : empty.state.activeTab === MediaKind.Video ? qsTr("No videos here") : qsTr("No photos here")
            font: MosaLook.title3
        }
        MosaPushButton {
            anchors.horizontalCenter: parent.horizontalCenter
            text: empty.state.viewFlaggedOnly ? qsTr("Show All") : qsTr("Choose Another Folder…")
            onClicked: {
                if (empty.state.viewFlaggedOnly)
                    empty.state.viewFlaggedOnly = false;
                else
                    empty.state.chooseFolder();
            }
        }
    }
}
