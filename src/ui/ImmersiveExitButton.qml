pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// Leads out of full screen while the toolbar is hidden.
MosaPlainButton {
    id: button

    symbol: "arrow.down.right.and.arrow.up.left"
    symbolSize: 15
    symbolWeight: Font.DemiBold
    padding: 10
    toolTip: qsTr("Exit Fullscreen")
    cornerRadius: width / 2

    background: MosaMaterial {
        radius: width / 2

        FocusRing {
            control: button
            cornerRadius: button.cornerRadius
        }
    }
}
