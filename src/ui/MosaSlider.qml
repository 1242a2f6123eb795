pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// A slider of mini size.
T.Slider {
    id: slider

    implicitWidth: 120
    implicitHeight: 14
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : MosaLook.disabledOpacity

    Accessible.role: Accessible.Slider

    background: SmoothRectangle {
        x: slider.leftPadding
        y: Math.round((slider.height - height) / 2)
        width: slider.availableWidth
        height: 3
        radius: 1.5
        color: Qt.rgba(1, 1, 1, 0.28)

        SmoothRectangle {
            width: slider.handle.x - slider.leftPadding + slider.handle.width / 2
            height: parent.height
            radius: 1.5
            color: MosaLook.mosaRed
        }
    }
    handle: SmoothRectangle {
        x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
        y: Math.round((slider.height - height) / 2)
        width: 11
        height: 11
        radius: 5.5
        color: slider.pressed ? Qt.rgba(0.86, 0.86, 0.88, 1) : "white"
        shadowColor: Qt.rgba(0, 0, 0, 0.4)
        shadowRadius: 3
        shadowOffset: 1

        FocusRing {
            control: slider
            cornerRadius: 5.5
        }
    }
}
