pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// One of the round controls that stand where a title bar's buttons would be.
Item {
    id: root

    required property string symbol
    property real symbolSize: 8
    required property string name
    /// Whether the symbol stands on a disc, as those that act on the window do.
    property bool disc: true
    /// What lies below may be as bright as the symbol.
    property bool overPicture: false
    property color hoverColor: Qt.rgba(1, 1, 1, 0.32)
    signal activated

    implicitWidth: 17
    implicitHeight: 20
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: root.activated()
    Keys.onReturnPressed: activated()
    Keys.onEnterPressed: activated()

    SmoothRectangle {
        anchors.centerIn: parent
        width: 12
        height: 12
        radius: 6
        color: area.containsMouse && root.disc ? root.hoverColor : root.overPicture ? MosaLook.ultraThinMaterial : root.disc ? Qt.rgba(1, 1, 1, 0.16) : "transparent"
        opacity: area.pressed ? 0.7 : 1
        borderWidth: 1
        borderColor: root.activeFocus ? "white" : "transparent"

        SymbolIcon {
            anchors.centerIn: parent
            name: root.symbol
            size: root.symbolSize
            weight: Font.DemiBold
            color: Qt.rgba(1, 1, 1, area.containsMouse || root.activeFocus ? 1 : root.overPicture ? 0.85 : 0.55)
        }
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.activated()
    }
}
