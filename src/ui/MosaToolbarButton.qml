pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A square symbol button of the toolbar.
MosaButtonBase {
    id: button

    required property string symbol
    property real symbolSize: 13
    property int symbolWeight: Font.Medium

    implicitWidth: 28
    implicitHeight: 28
    fill: Qt.rgba(1, 1, 1, 0.045)
    pressedFill: Qt.rgba(1, 1, 1, 0.12)

    contentItem: SymbolIcon {
        name: button.symbol
        size: button.symbolSize
        weight: button.symbolWeight
        color: button.foreground
    }
}
