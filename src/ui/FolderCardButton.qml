// Not bound: the Loader of Qt 6.4 refuses bound components.

import QtQuick
import Mosa.State
import Mosa.UI

/// One subfolder of the strip.
MosaPlainButton {
    id: button

    required property var modelData
    readonly property folderCard card: modelData
    readonly property bool hasPicture: card.representative !== undefined
    readonly property color ground: MosaLook.over(Qt.rgba(1, 1, 1, 0.045), MosaLook.over(MosaLook.faded(MosaLook.mosaPanel, 0.62), MosaLook.mosaBackground))

    width: 242
    height: 66
    padding: 6
    cornerRadius: 9
    fill: Qt.rgba(1, 1, 1, 0.045)
    pressedFill: Qt.rgba(1, 1, 1, 0.045)

    Accessible.name: card.name
    Accessible.description: count.text

    contentItem: Item {
        Loader {
            id: picture
            width: button.hasPicture ? 86 : 54
            height: 54
            sourceComponent: button.hasPicture ? thumbnail : folderSymbol
        }
        Column {
            anchors.left: picture.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            // The text ends at a space of at least 4, one step away.
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            MosaText {
                width: parent.width
                text: MosaLook.oneLine(button.card.name)
                font: MosaLook.system(13, Font.Medium)
                elide: Text.ElideRight
                maximumLineCount: 1
            }
            MosaText {
                id: count
                text: qsTr("%1 items").arg(button.card.itemCount)
                font: MosaLook.system(11, Font.Normal)
                color: MosaLook.secondary
            }
        }
    }

    Component {
        id: thumbnail

        MediaThumbnail {
            item: button.card.representative

            SmoothRectangle {
                anchors.fill: parent
                inverted: true
                radius: 6
                color: button.ground
            }
        }
    }
    Component {
        id: folderSymbol

        SymbolIcon {
            name: "folder.fill"
            size: 28
            color: MosaLook.mosaRed
        }
    }
}
