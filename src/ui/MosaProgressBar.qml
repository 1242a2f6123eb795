pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// A linear progress bar.
T.ProgressBar {
    id: bar

    implicitWidth: 90
    implicitHeight: 6

    Accessible.role: Accessible.ProgressBar
    Accessible.ignored: !visible
    Accessible.description: Math.round(visualPosition * 100) + "%"

    background: SmoothRectangle {
        radius: 3
        color: Qt.rgba(1, 1, 1, 0.12)
    }
    contentItem: Item {
        SmoothRectangle {
            // Never narrower than its round ends.
            width: bar.visualPosition > 0 ? Math.max(bar.height, Math.round(bar.visualPosition * bar.width)) : 0
            height: bar.height
            radius: 3
            color: MosaLook.mosaRed
        }
    }
}
