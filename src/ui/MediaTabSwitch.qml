pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// The segmented control that switches between videos and photos.
Item {
    id: tabs

    required property AppState state

    implicitWidth: 210
    implicitHeight: 28

    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Media")

    SmoothRectangle {
        anchors.fill: parent
        radius: 7
        color: Qt.rgba(1, 1, 1, 0.055)
    }
    Row {
        anchors.fill: parent
        anchors.margins: 2

        MosaSegment {
            width: parent.width / 2
            height: parent.height
            text: qsTr("Videos %1").arg(tabs.state.videoCount)
            selected: tabs.state.activeTab === MediaKind.Video
            onClicked: tabs.state.activeTab = MediaKind.Video
        }
        MosaSegment {
            width: parent.width / 2
            height: parent.height
            text: qsTr("Photos %1").arg(tabs.state.photoCount)
            selected: tabs.state.activeTab === MediaKind.Photo
            onClicked: tabs.state.activeTab = MediaKind.Photo
        }
    }
}
