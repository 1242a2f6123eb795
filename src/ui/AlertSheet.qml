pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// The alert that is up.
MosaSheet {
    id: sheet

    required property SheetAlertPresenter presenter

    panelWidth: 440
    panelHeight: Math.max(texts.height, 44) + buttonRow.height + 22 + 22 + 20
    initialFocus: buttons.itemAt(0)

    Keys.onReturnPressed: presenter.choose(0)
    Keys.onEnterPressed: presenter.choose(0)
    Keys.onEscapePressed: presenter.choose(presenter.buttons.length - 1)

    accessibleRole: Accessible.AlertMessage
    accessibleName: presenter.messageText
    accessibleDescription: presenter.informativeText

    SymbolIcon {
        id: warning

        anchors.left: parent.left
        anchors.leftMargin: 22
        anchors.top: parent.top
        anchors.topMargin: 20
        width: 44
        height: 44
        name: "exclamationmark.triangle.fill"
        size: 36
        color: MosaLook.warning
    }
    Column {
        id: texts

        anchors.left: warning.right
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 22
        anchors.top: parent.top
        anchors.topMargin: 22
        spacing: 6

        MosaText {
            width: parent.width
            text: sheet.presenter.messageText
            wrapMode: Text.Wrap
            font: MosaLook.system(15, Font.DemiBold)
        }
        MosaText {
            width: parent.width
            text: sheet.presenter.informativeText
            wrapMode: Text.Wrap
            font: MosaLook.system(12, Font.Normal)
            color: MosaLook.secondary
        }
    }
    Row {
        id: buttonRow

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 20
        spacing: 10
        layoutDirection: Qt.RightToLeft

        Repeater {
            id: buttons

            model: sheet.presenter.buttons

            MosaPushButton {
                required property string modelData
                required property int index

                text: modelData
                isDefault: index === 0
                destructive: index === 0 && sheet.presenter.destructive
                onClicked: sheet.presenter.choose(index)
            }
        }
    }
}
