pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Mosa.App

// What the check for updates found, and the way to install it.
Panel {
    id: root

    required property MosaUpdaterController updater

    visible: updater.title !== ""
    width: 380
    closePolicy: updater.busy ? Popup.NoAutoClose : Popup.CloseOnEscape
    onClosed: updater.dismiss()

    contentItem: Column {
        spacing: 12

        Text {
            width: parent.width
            text: root.updater.title
            color: "white"
            font.pixelSize: 17
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: parent.width
            visible: text !== ""
            text: root.updater.details
            color: Qt.rgba(1, 1, 1, 0.7)
            font.pixelSize: 13
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        ProgressBar {
            id: bar

            width: parent.width
            visible: root.updater.busy
            indeterminate: root.updater.progress < 0
            value: Math.max(root.updater.progress, 0)
            Accessible.role: Accessible.ProgressBar
            Accessible.name: root.updater.title
        }
        Row {
            anchors.right: parent.right
            visible: !root.updater.busy
            spacing: 10

            PanelButton {
                text: root.updater.installable ? qsTr("Later") : qsTr("OK")
                primary: !root.updater.installable
                focus: !root.updater.installable
                onClicked: root.close()
            }
            PanelButton {
                visible: root.updater.installable
                text: qsTr("Install Update")
                primary: true
                focus: visible
                onClicked: root.updater.install()
            }
        }
    }
}
