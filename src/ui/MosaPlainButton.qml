pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A button without a shape of its own: just its label, dimmed while pressed.
MosaButtonBase {
    id: button

    property string symbol
    property real symbolSize: 13
    property int symbolWeight: Font.Medium

    padding: 0
    opacity: !enabled ? MosaLook.disabledOpacity : down ? 0.65 : 1

    contentItem: SymbolIcon {
        name: button.symbol
        size: button.symbolSize
        weight: button.symbolWeight
        color: button.foreground
    }
}
