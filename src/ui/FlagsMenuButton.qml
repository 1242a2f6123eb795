pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// How many files are flagged, and what can be done with them.
MosaButtonBase {
    id: button

    required property AppState state
    /// The ids of the items on the page shown.
    required property list<string> pageItemIds
    readonly property bool open: menu.opened

    readonly property bool any: state.flagCount > 0

    implicitHeight: 28
    horizontalPadding: 6
    toolTip: open ? "" : qsTr("Flags and File Actions")
    foreground: any ? MosaLook.mosaRed : MosaLook.secondary
    opacity: !enabled ? MosaLook.disabledOpacity : down && !open ? 0.7 : 1
    fill: open ? Qt.rgba(1, 1, 1, 0.09) : "transparent"
    pressedFill: fill

    Accessible.role: Accessible.ButtonMenu
    Accessible.name: qsTr("Flags and File Actions")
    Accessible.description: state.flagCount

    onClicked: menu.open()
    Keys.onDownPressed: menu.open()

    contentItem: Row {
        spacing: 4

        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: button.any ? "flag.fill" : "flag"
            size: 13
            weight: Font.Medium
            color: button.foreground
        }
        MosaText {
            anchors.verticalCenter: parent.verticalCenter
            text: button.state.flagCount
            font: MosaLook.system(13, Font.Medium)
            color: button.foreground
        }
        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: "chevron.down"
            size: 8
            weight: Font.DemiBold
            color: MosaLook.tertiary
        }
    }

    MosaMenu {
        id: menu

        title: qsTr("Flags and File Actions")

        // Its trailing edge below the button's.
        x: button.width - width
        y: button.height + 6

        MosaMenuItem {
            text: qsTr("Select Page")
            onTriggered: button.state.setFlagged(button.pageItemIds, true)
        }
        MosaMenuItem {
            text: qsTr("Deselect Page")
            onTriggered: button.state.setFlagged(button.pageItemIds, false)
        }
        MosaMenuSeparator {}
        MosaMenuItem {
            text: qsTr("View Flagged Only")
            checkable: true
            checked: button.state.viewFlaggedOnly
            onTriggered: button.state.viewFlaggedOnly = !button.state.viewFlaggedOnly
        }
        MosaMenuSeparator {}
        MosaMenuItem {
            text: qsTr("Copy Flagged…")
            enabled: button.any
            onChosen: button.state.copyFlagged()
        }
        MosaMenuItem {
            text: qsTr("Move Flagged…")
            enabled: button.any
            onChosen: button.state.moveFlagged()
        }
        MosaMenuItem {
            text: qsTr("Move Flagged to Trash…")
            enabled: button.any
            destructive: true
            onChosen: button.state.trashFlagged()
        }
    }
}
