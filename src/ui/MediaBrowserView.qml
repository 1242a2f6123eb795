// Not bound: the Loader of Qt 6.4 refuses bound components.

import QtQuick
import Mosa.State
import Mosa.UI

/// The body of the window while a folder is open.
Item {
    id: browser

    required property AppState state
    required property bool immersive
    /// Shows and opens files: showInFileManager(url), openInDefaultApp(url).
    property var desktop: null
    signal immersiveRequested(on: bool)

    MediaPager {
        id: mediaPager
        state: browser.state
        width: browser.width
        height: browser.height
        immersive: browser.immersive
    }
    NeighbourPrefetch {
        pager: mediaPager
    }

    Column {
        id: bars
        width: parent.width
        visible: !browser.immersive
        // What is merely hidden would keep the focus, and with it the keys.
        enabled: visible

        ToolbarView {
            objectName: "toolbar"
            width: parent.width
            state: browser.state
            pageItemIds: mediaPager.pageItemIds
            pageCount: mediaPager.pageCount
            immersive: browser.immersive
            onImmersiveRequested: on => browser.immersiveRequested(on)
        }
        FolderStripView {
            width: parent.width
            visible: folders.length > 0
            folders: browser.state.folders
            onOpened: card => browser.state.openFolder(card.url, true)
        }
    }

    Loader {
        y: browser.immersive ? 0 : bars.height
        width: parent.width
        height: parent.height - y
        sourceComponent: browser.state.isScanning ? scanning : mediaPager.isEmpty ? empty : grid
    }
    Component {
        id: scanning

        ScanningView {
            state: browser.state
        }
    }
    Component {
        id: empty

        EmptyMediaView {
            state: browser.state
        }
    }
    Component {
        id: grid

        MediaGridView {
            state: browser.state
            pager: mediaPager
            desktop: browser.desktop
        }
    }

    Loader {
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.margins: 16
        active: browser.immersive
        sourceComponent: ImmersiveExitButton {
            onClicked: browser.immersiveRequested(false)
        }
    }
}
