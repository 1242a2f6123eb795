pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// The sheet in which the user puts the folder's videos into an order of their own. Every move takes effect at
/// once.
MosaSheet {
    id: sheet

    required property AppState state

    function dismiss(): void {
        state.arrangeOpen = false;
    }

    panelWidth: 620
    panelHeight: 520
    initialFocus: list

    Keys.onReturnPressed: dismiss()
    Keys.onEnterPressed: dismiss()

    accessibleName: heading.text

    Item {
        id: header

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        height: titles.height + 36

        Column {
            id: titles

            anchors.left: parent.left
            anchors.leftMargin: 18
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            MosaText {
                id: heading

                text: qsTr("Arrange Videos")
                font: MosaLook.system(17, Font.DemiBold)
            }
            MosaText {
                text: qsTr("Move clips into the order you want to browse.")
                font: MosaLook.system(12, Font.Normal)
                color: MosaLook.secondary
            }
        }
        Row {
            anchors.right: parent.right
            anchors.rightMargin: 18
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8

            MosaPushButton {
                text: qsTr("Reset")
                onClicked: sheet.state.resetVideoOrder()
            }
            MosaPushButton {
                text: qsTr("Done")
                isDefault: true
                onClicked: sheet.dismiss()
            }
        }
    }
    MosaDivider {
        id: divider

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: header.bottom
    }
    ArrangeVideosList {
        id: list

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: divider.bottom
        anchors.bottom: parent.bottom
        anchors.margins: 6
        state: sheet.state
    }
}
