pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// Fills the window while no folder is open, and leads to one.
FolderDropTarget {
    id: picker

    required property AppState state

    onDropped: url => state.openFolder(url, true)

    LastFolder {
        id: lastFolder
        state: picker.state
    }
    Connections {
        target: picker.state
        function onStatusMessageChanged(): void {
            lastFolder.refresh();
        }
        function onErrorMessageChanged(): void {
            lastFolder.refresh();
        }
        function onIsScanningChanged(): void {
            lastFolder.refresh();
        }
    }
    Connections {
        target: picker.Window.window
        function onActiveChanged(): void {
            lastFolder.refresh();
        }
    }

    Column {
        anchors.centerIn: parent
        spacing: 24

        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            width: icon.status === Image.Ready ? 112 : symbol.width
            height: icon.status === Image.Ready ? 112 : symbol.height

            Image {
                id: icon
                anchors.fill: parent
                source: "qrc:/qt/qml/Mosa/UI/Mosa-Icon.svg"
                sourceSize: Qt.size(112, 112)
                visible: status === Image.Ready
            }
            SymbolIcon {
                id: symbol
                name: "film.stack"
                size: 68
                weight: Font.Light
                color: MosaLook.mosaRed
                visible: !icon.visible
            }
        }

        Column {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 7

            MosaText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Mosa")
                font: MosaLook.system(32, Font.DemiBold)
            }
            MosaText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Open a folder of videos and photos.")
                font: MosaLook.system(15, Font.Normal)
                color: MosaLook.secondary
            }
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 12

            MosaPrimaryButton {
                text: qsTr("Choose Folder…")
                onClicked: picker.state.chooseFolder()
            }
            MosaSecondaryButton {
                visible: lastFolder.available
                text: qsTr("Open Last")
                onClicked: lastFolder.open()
            }
        }

        MosaText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("You can also drop a folder here.")
            font: MosaLook.system(12, Font.Normal)
            color: MosaLook.tertiary
        }
    }

    SmoothRectangle {
        objectName: "dropFrame"
        anchors.fill: parent
        anchors.margins: 26
        radius: 22
        borderWidth: 3
        borderColor: MosaLook.faded(MosaLook.mosaRed, 0.9)
        visible: picker.isTargeted
    }
}
