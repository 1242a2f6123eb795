pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// The indeterminate progress indicator.
Item {
    id: spinner

    property real size: 32
    property bool running: visible

    implicitWidth: size
    implicitHeight: size

    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("In progress")

    SymbolIcon {
        anchors.fill: parent
        name: "progress.ring"
        size: spinner.size
        weight: Font.Medium
        color: Qt.rgba(1, 1, 1, 0.1)
    }
    SymbolIcon {
        anchors.fill: parent
        name: "progress.arc"
        size: spinner.size
        weight: Font.Medium
        color: Qt.rgba(1, 1, 1, 0.65)

        RotationAnimator on rotation {
            from: 0
            to: 360
            duration: 1000
            loops: Animation.Infinite
            running: spinner.running
        }
    }
}
