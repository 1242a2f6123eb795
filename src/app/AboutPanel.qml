pragma ComponentBehavior: Bound

import QtQuick

Panel {
    id: root

    width: 320

    contentItem: Column {
        spacing: 8

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            source: "qrc:/qt/qml/Mosa/UI/Mosa-Icon.svg"
            sourceSize: Qt.size(96, 96)
            Accessible.ignored: true
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Mosa"
            color: "white"
            font.pixelSize: 22
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Version %1").arg(Qt.application.version)
            color: Qt.rgba(1, 1, 1, 0.6)
            font.pixelSize: 12
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: qsTr("Browse the videos and photos of a folder.")
            color: Qt.rgba(1, 1, 1, 0.8)
            font.pixelSize: 13
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item {
            width: 1
            height: 6
        }
        PanelButton {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Close")
            focus: true
            onClicked: root.close()
        }
    }
}
