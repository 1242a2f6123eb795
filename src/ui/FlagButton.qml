pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// The round flag toggle of cells and viewers.
MosaPlainButton {
    id: button

    required property bool flagged

    implicitWidth: 26
    implicitHeight: 26
    cornerRadius: 13
    fill: Qt.rgba(0, 0, 0, 0.65)
    symbol: flagged ? "flag.fill" : "flag"
    symbolSize: 13
    symbolWeight: Font.Medium
    foreground: flagged ? MosaLook.mosaRed : "white"
    toolTip: flagged ? qsTr("Remove Flag") : qsTr("Flag")
}
