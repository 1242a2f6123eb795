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
    Accessible.ignored: !visible

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
        // Symbols are drawn pixel by pixel, which looks ragged where one turns.
        layer.enabled: true
        layer.smooth: true

        RotationAnimator on rotation {
            from: 0
            to: 360
            duration: 1000
            loops: Animation.Infinite
            running: spinner.running && !MosaLook.reducedMotion
        }
        // Without a turn it still shows that something goes on.
        SequentialAnimation on opacity {
            loops: Animation.Infinite
            running: spinner.running && MosaLook.reducedMotion

            OpacityAnimator {
                from: 1
                to: 0.35
                duration: 900
            }
            OpacityAnimator {
                from: 0.35
                to: 1
                duration: 900
            }
        }
    }
}
