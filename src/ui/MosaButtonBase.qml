pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// What every button of the program has: a label of its own or its text, a shape behind it, a tooltip, a ring
/// when it is reached by keyboard, and its name on the accessibility bus.
T.Button {
    id: button

    property string toolTip
    property color foreground: MosaLook.primary
    property color fill: "transparent"
    property color pressedFill: fill
    property real cornerRadius: 6
    /// Has the focus after a screen reader pressed it, for it to come back to when a sheet ends that it opened.
    property bool takesFocus: true

    /// As a screen reader does it.
    function press(): void {
        if (takesFocus)
            forceActiveFocus(Qt.OtherFocusReason);
        clicked();
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    font: MosaLook.body
    // What is merely hidden would keep the focus, and with it the keys.
    enabled: visible
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    opacity: enabled ? 1 : MosaLook.disabledOpacity

    Accessible.role: Accessible.Button
    Accessible.name: text !== "" ? text : toolTip
    Accessible.ignored: !visible
    Accessible.onPressAction: if (button.enabled) button.press()

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    contentItem: Text {
        text: button.text
        font: button.font
        color: button.foreground
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
    background: SmoothRectangle {
        radius: button.cornerRadius
        color: button.down ? button.pressedFill : button.fill

        FocusRing {
            control: button
            cornerRadius: button.cornerRadius
        }
    }

    MosaToolTip {
        text: button.toolTip
        visible: button.toolTip !== "" && button.hovered && !button.down
    }
}
