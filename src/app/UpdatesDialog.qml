pragma ComponentBehavior: Bound

import QtQuick
import Mosa.App
import Mosa.UI

/// What the check for updates found, and the way to install it.
Panel {
    id: root

    required property MosaUpdaterController updater

    title: updater.title
    width: 380
    // Work under way goes on without the dialog, which comes back with the outcome.
    onClosed: updater.dismiss()

    Connections {
        target: root.updater
        function onPhaseChanged(): void {
            if (root.updater.title === "") {
                root.close();
                return;
            }
            root.open();
            (root.updater.busy ? hide : answer).forceActiveFocus();
        }
    }

    contentItem: Column {
        spacing: 14

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
            topPadding: 4
            spacing: 10

            MosaPushButton {
                id: hide
                visible: root.updater.busy
                text: qsTr("Hide")
                onClicked: root.close()
            }
            MosaPushButton {
                visible: root.updater.installable
                text: qsTr("Later")
                onClicked: root.close()
            }
            MosaPushButton {
                id: answer
                isDefault: true
                visible: !root.updater.busy
                text: root.updater.installable ? qsTr("Install Update") : qsTr("OK")
                onClicked: root.updater.installable ? root.updater.install() : root.close()
            }
        }
    }
}
