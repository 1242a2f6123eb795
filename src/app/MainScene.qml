pragma ComponentBehavior: Bound

import QtQuick
import Mosa.App
import Mosa.State
import Mosa.UI

/// Everything in the window: what the program shows, and what a title bar and a menu bar would have offered.
Item {
    id: root

    required property AppState state
    required property MainWindow host
    required property MenuCommands menuCommands
    required property MosaUpdaterController updater
    required property SheetAlertPresenter alerts
    required property SheetFolderChooser chooser

    /// Something is up that takes the keyboard for itself.
    readonly property bool questioned: about.visible || updates.visible || sheets.active

    function openMenu(position: point): void {
        menu.openAt(root, position);
    }
    /// Below its control, as the keyboard and the control ask for it.
    function pullMenuDown(): void {
        openMenu(Qt.point(controls.x, controls.height - 6));
    }

    Component.onCompleted: {
        host.menuRequested.connect(openMenu);
        menuCommands.aboutRequested.connect(about.open);
    }

    ContentView {
        anchors.fill: parent
        state: root.state
        host: root.host
        keysSuspended: root.questioned
        enabled: !sheets.covering
    }

    SheetHost {
        id: sheets

        anchors.fill: parent
        state: root.state
        alerts: root.alerts
        chooser: root.chooser
        // The panels would lie above a sheet and keep every press from it.
        onActiveChanged: {
            if (active) {
                about.close();
                updates.close();
            }
        }
    }
    Binding {
        target: root.menuCommands
        property: "suspended"
        value: sheets.active
    }

    WindowControls {
        id: controls

        host: root.host
        overPicture: root.state.fullItem !== undefined
        visible: !root.host.fullScreen
        onMenuRequested: root.pullMenuDown()
    }

    ResizeBands {
        anchors.fill: parent
        host: root.host
        visible: !root.host.fullScreen && !root.host.maximised
    }

    MainMenu {
        id: menu

        menuCommands: root.menuCommands
    }

    UpdatesDialog {
        id: updates

        updater: root.updater
    }

    AboutPanel {
        id: about
    }

    Repeater {
        model: root.menuCommands.commands
        delegate: Item {
            id: key

            required property MenuCommand modelData

            Shortcut {
                sequence: key.modelData.shortcut
                context: Qt.ApplicationShortcut
                enabled: key.modelData.enabled && key.modelData.shortcut !== ""
                onActivated: key.modelData.trigger()
            }
        }
    }

    Shortcut {
        sequences: ["F10", "Menu"]
        context: Qt.ApplicationShortcut
        enabled: !root.questioned
        onActivated: {
            if (menu.opened) {
                menu.close();
            } else {
                root.pullMenuDown();
                menu.step(1);
            }
        }
    }
}
