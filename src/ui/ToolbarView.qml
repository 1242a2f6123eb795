pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Mosa.State
import Mosa.UI

/// The row of controls above the grid.
Item {
    id: toolbar

    required property AppState state
    /// The ids of the items on the page shown, and how many pages there are.
    required property list<string> pageItemIds
    required property int pageCount
    required property bool immersive
    signal immersiveRequested(on: bool)

    implicitHeight: 48

    Accessible.role: Accessible.ToolBar
    Accessible.name: qsTr("Toolbar")

    Rectangle {
        anchors.fill: parent
        color: MosaLook.faded(MosaLook.mosaPanel, 0.98)
    }
    MosaDivider {
        anchors.bottom: parent.bottom
        width: parent.width
        opacity: 0.5
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 76
        anchors.rightMargin: 12
        spacing: 9

        Row {
            spacing: 7

            MosaToolbarButton {
                symbol: "chevron.left"
                toolTip: qsTr("Back")
                enabled: toolbar.state.canNavigateBack
                onClicked: toolbar.state.navigateBack()
            }
            MosaToolbarButton {
                symbol: "folder"
                toolTip: qsTr("Open Folder")
                onClicked: toolbar.state.chooseFolder()
            }
        }
        MediaTabSwitch {
            state: toolbar.state
        }
        PageNavigation {
            visible: toolbar.pageCount >= 2
            state: toolbar.state
            pageCount: toolbar.pageCount
        }
        Item {
            Layout.fillWidth: true
            Layout.minimumWidth: 8
        }
        MosaProgressBar {
            visible: toolbar.state.operationProgress !== undefined
            value: toolbar.state.operationProgress ?? 0
            Accessible.name: toolbar.state.statusMessage ?? qsTr("Progress")
        }
        MosaText {
            id: status
            Layout.fillWidth: true
            Layout.maximumWidth: Math.ceil(implicitWidth)
            visible: toolbar.state.operationProgress === undefined && text !== ""
            text: toolbar.state.statusMessage ?? ""
            font: MosaLook.system(11, Font.Normal)
            color: MosaLook.secondary
            elide: Text.ElideRight
            maximumLineCount: 1
        }
        MosaToolbarTextButton {
            visible: toolbar.state.activeTab === MediaKind.Video && toolbar.state.videoCount >= 2
            text: qsTr("Arrange")
            onClicked: toolbar.state.arrangeOpen = true
        }
        MosaToolbarTextButton {
            visible: toolbar.state.hiddenVideoCount > 0
            text: qsTr("%1 removed · Reset").arg(toolbar.state.hiddenVideoCount)
            onClicked: toolbar.state.resetHiddenVideos()
        }
        FlagsMenuButton {
            state: toolbar.state
            pageItemIds: toolbar.pageItemIds
        }
        MosaToolbarButton {
            symbol: "arrow.up.left.and.arrow.down.right"
            toolTip: qsTr("Fullscreen")
            onClicked: toolbar.immersiveRequested(true)
        }
    }
}
