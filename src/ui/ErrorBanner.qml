pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A message that stays until it is dismissed. As wide as its content, within limits.
Item {
    id: banner

    required property string message
    property real maximumWidth: 920
    signal dismissed

    // Room for the shadow beside the shape.
    readonly property real margin: 18

    implicitWidth: panel.width + 2 * margin
    implicitHeight: panel.height

    Accessible.role: Accessible.AlertMessage
    Accessible.name: message

    MosaMaterial {
        id: panel

        x: banner.margin
        width: row.width + 28
        height: row.height + 20
        shadowColor: Qt.rgba(0, 0, 0, 0.33)
        shadowRadius: 16

        Row {
            id: row
            x: 14
            y: 10
            spacing: 10

            SymbolIcon {
                id: symbol
                anchors.verticalCenter: parent.verticalCenter
                name: "exclamationmark.triangle.fill"
                size: 13
                color: MosaLook.warning
            }
            Text {
                readonly property real room: banner.maximumWidth - 2 * banner.margin - 28 - 2 * row.spacing - symbol.width - dismiss.width

                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(Math.ceil(implicitWidth), room)
                text: banner.message
                font: MosaLook.body
                color: MosaLook.primary
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                textFormat: Text.PlainText

                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            MosaPlainButton {
                id: dismiss
                anchors.verticalCenter: parent.verticalCenter
                symbol: "xmark"
                symbolWeight: Font.Normal
                Accessible.name: qsTr("Dismiss")
                onClicked: banner.dismissed()
            }
        }
    }
}
