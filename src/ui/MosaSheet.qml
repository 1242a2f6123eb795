pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A modal panel within the window. What lies below is dimmed and gets no input while the sheet is there; the
/// Tab key goes round within it, and its end gives the focus back.
FocusScope {
    id: sheet

    property real panelWidth: 420
    property real panelHeight: 200
    /// Has the focus first.
    property Item initialFocus: null
    property int accessibleRole: Accessible.Dialog
    property string accessibleName
    property string accessibleDescription
    default property alias content: body.data

    /// For whoever ends the sheet to give back.
    readonly property FormerFocus formerFocus: FormerFocus {}

    anchors.fill: parent
    focus: true

    Component.onCompleted: {
        formerFocus.note(Window.activeFocusItem);
        (initialFocus ?? firstStop.nextItemInFocusChain(true)).forceActiveFocus(formerFocus.reason);
        appearance.start();
    }
    NumberAnimation {
        id: appearance
        target: sheet
        property: "opacity"
        from: 0
        to: 1
        duration: MosaLook.lasting(120)
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.5)
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        preventStealing: true
        onWheel: wheel => wheel.accepted = true
    }
    DropArea {
        anchors.fill: parent
        onEntered: drag => drag.accepted = true
        onDropped: drop => drop.accepted = false
    }

    // Before the first and behind the last control of the panel: who gets there is sent round.
    Item {
        id: firstStop
        activeFocusOnTab: true
        onActiveFocusChanged: {
            if (activeFocus) {
                lastStop.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason);
            }
        }
    }

    SmoothRectangle {
        anchors.fill: body
        anchors.margins: -1
        radius: 13
        color: Qt.rgba(0, 0, 0, 0.35)
    }
    SmoothRectangle {
        id: body

        anchors.centerIn: parent
        width: Math.min(sheet.panelWidth, sheet.width - 32)
        height: Math.min(sheet.panelHeight, sheet.height - 32)
        radius: 12
        color: MosaLook.mosaPanel
        borderColor: MosaLook.hairline
        borderWidth: 1

        /// For assistive technology, see AccessibleItem.
        readonly property bool modal: true
        Accessible.role: sheet.accessibleRole
        Accessible.name: sheet.accessibleName
        Accessible.description: sheet.accessibleDescription
    }

    Item {
        id: lastStop
        activeFocusOnTab: true
        onActiveFocusChanged: {
            if (activeFocus) {
                firstStop.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
            }
        }
    }
}
