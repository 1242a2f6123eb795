pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// What the program is, and its version.
Panel {
    id: root

    title: qsTr("About Mosa")
    width: 320

    contentItem: Column {
        spacing: 8

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            source: "qrc:/qt/qml/Mosa/UI/Mosa-Icon.svg"
            sourceSize.width: 96
            sourceSize.height: 96
            Accessible.ignored: true
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Mosa"
            color: MosaLook.primary
            font: MosaLook.system(22, Font.DemiBold)
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Version %1").arg(Qt.application.version)
            color: MosaLook.secondary
            font: MosaLook.system(12, Font.Normal)
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: qsTr("Browse the videos and photos of a folder.")
            color: MosaLook.primary
            font: MosaLook.body
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: qsTr("Free software under the GNU General Public License, version 3 or later.")
            color: MosaLook.tertiary
            font: MosaLook.system(11, Font.Normal)
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item {
            width: 1
            height: 6
        }
        MosaPushButton {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Close")
            isDefault: true
            focus: true
            onClicked: root.close()
        }
    }
}
