// Not bound: the Loader of Qt 6.4 refuses bound components.

import QtQuick
import Mosa.State
import Mosa.UI

/// Everything in the window: the picker or the browser, the viewer over it, the error over all.
Item {
    id: root

    required property AppState state
    property alias immersive: keyMap.immersive
    /// Questions that take the keyboard for themselves set it while they are on screen.
    property bool keysSuspended: false

    /// What the viewer shows; kept as it is while the viewer goes away.
    property mediaFile viewedItem

    /// The window to toggle; without one, immersive changes alone.
    property MainWindow host: null

    /// Into or out of full screen, as a control asks.
    function requestImmersive(on: bool): void {
        immersive = on;
        host?.toggleFullScreen();
    }

    Rectangle {
        anchors.fill: parent
        color: MosaLook.mosaBackground
    }

    Loader {
        anchors.fill: parent
        // Covered by the viewer: no pointer, key or screen reader has any business there.
        visible: !viewer.active
        // What is merely hidden would keep the focus, and with it the keys.
        enabled: visible
        sourceComponent: root.state.folder === undefined ? picker : browser
    }
    Component {
        id: picker

        FolderPickerView {
            state: root.state
        }
    }
    Component {
        id: browser

        MediaBrowserView {
            state: root.state
            immersive: root.immersive
            desktop: root.host
            onImmersiveRequested: on => root.requestImmersive(on)
        }
    }

    FormerFocus {
        id: formerFocus
    }
    Connections {
        target: root.state
        function onFullItemChanged() {
            if (root.state.fullItem !== undefined)
                root.viewedItem = root.state.fullItem;
            const opens = root.state.fullItem !== undefined;
            if (opens === viewer.active)
                return;
            if (opens)
                formerFocus.note(root.Window.activeFocusItem);
            viewer.active = opens;
            if (!opens)
                formerFocus.giveBack();
        }
    }
    Loader {
        id: viewer
        z: 20
        anchors.fill: parent
        active: false
        sourceComponent: FullMediaView {
            item: root.viewedItem
            state: root.state
        }
    }

    Loader {
        z: 30
        width: parent.width
        y: 54
        active: root.state.errorMessage !== undefined
        sourceComponent: Item {
            height: banner.height

            ErrorBanner {
                id: banner
                anchors.horizontalCenter: parent.horizontalCenter
                maximumWidth: parent.width
                message: root.state.errorMessage ?? ""
                onDismissed: root.state.dismissError()
            }
        }
    }

    KeyMap {
        id: keyMap
        state: root.state
        hasWindow: root.host !== null
        windowIsFullScreen: root.host?.fullScreen ?? false
        onFullScreenToggled: root.host?.toggleFullScreen()
    }
    KeyboardMonitor {
        keyMap: keyMap
        suspended: root.keysSuspended
    }

    NotificationObserver {
        name: "MosaWindowWillEnterFullScreen"
        onPosted: root.immersive = true
    }
    NotificationObserver {
        name: "MosaWindowDidEnterFullScreen"
        onPosted: root.immersive = true
    }
    NotificationObserver {
        name: "MosaWindowWillExitFullScreen"
        onPosted: root.immersive = false
    }
    NotificationObserver {
        name: "MosaWindowDidExitFullScreen"
        onPosted: root.immersive = false
    }
    FolderOpener {
        state: root.state
    }
}
