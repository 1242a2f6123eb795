pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// One segment of a segmented control.
T.TabButton {
    id: segment

    property bool selected: false

    checkable: false
    focusPolicy: Qt.TabFocus
    font: MosaLook.system(12, Font.Medium)

    Accessible.name: text
    Accessible.onPressAction: segment.clicked()
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.focusable: true

    Keys.onReturnPressed: segment.clicked()
    Keys.onEnterPressed: segment.clicked()

    contentItem: Text {
        text: segment.text
        font: segment.font
        color: segment.selected ? MosaLook.primary : MosaLook.secondary
        opacity: !segment.enabled ? MosaLook.disabledOpacity : segment.down && !segment.selected ? 0.7 : 1
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
    background: SmoothRectangle {
        radius: 5
        color: segment.selected ? Qt.rgba(1, 1, 1, 0.16) : "transparent"
        borderColor: segment.selected ? Qt.rgba(1, 1, 1, 0.06) : "transparent"
        borderWidth: 1

        FocusRing {
            control: segment
            cornerRadius: 5
            distance: 2
        }
    }
}
