pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.App
import Mosa.UI

// What the check for updates found, and the way to install it.
Panel {
    id: root

    required property MosaUpdaterController updater

    visible: updater.title !== ""
    width: 380
    closePolicy: updater.busy ? T.Popup.NoAutoClose : T.Popup.CloseOnEscape
    onClosed: updater.dismiss()

    contentItem: Column {
        spacing: 12

        Text {
            width: parent.width
            text: root.updater.title
            color: MosaLook.primary
            font: MosaLook.system(17, Font.DemiBold)
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: parent.width
            visible: text !== ""
            text: root.updater.details
            color: MosaLook.secondary
            font: MosaLook.body
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        MosaProgressBar {
            width: parent.width
            visible: root.updater.busy && root.updater.progress >= 0
            value: Math.max(root.updater.progress, 0)
            Accessible.name: root.updater.title
        }
        MosaSpinner {
            visible: root.updater.busy && root.updater.progress < 0
        }
        Row {
            anchors.right: parent.right
            visible: !root.updater.busy
            spacing: 10

            MosaSecondaryButton {
                visible: root.updater.installable
                text: qsTr("Later")
                onClicked: root.close()
            }
            MosaPrimaryButton {
                focus: true
                text: root.updater.installable ? qsTr("Install Update") : qsTr("OK")
                onClicked: root.updater.installable ? root.updater.install() : root.close()
            }
        }
    }
}
