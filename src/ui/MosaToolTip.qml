pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// The short text that appears below a control on which the pointer rests.
T.ToolTip {
    id: tip

    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: parent ? parent.height + 6 : 0
    implicitWidth: label.implicitWidth + leftPadding + rightPadding
    implicitHeight: label.implicitHeight + topPadding + bottomPadding
    margins: 6
    leftPadding: 8
    rightPadding: 8
    topPadding: 5
    bottomPadding: 5
    delay: 700
    timeout: 8000
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: Text {
        id: label
        text: tip.text
        font: MosaLook.system(11, Font.Normal)
        color: MosaLook.primary
        textFormat: Text.PlainText
    }
    background: SmoothRectangle {
        radius: 6
        color: MosaLook.menuMaterial
        borderColor: MosaLook.hairline
        borderWidth: 1
        shadowColor: Qt.rgba(0, 0, 0, 0.45)
        shadowRadius: 10
        shadowOffset: 3
    }
}
