pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// The one button of a view that leads on.
MosaButtonBase {
    horizontalPadding: 18
    verticalPadding: 9
    font: MosaLook.system(14, Font.DemiBold)
    foreground: "white"
    fill: MosaLook.mosaRed
    pressedFill: MosaLook.faded(MosaLook.mosaRed, 0.78)
    cornerRadius: 8
}
