pragma ComponentBehavior: Bound

import QtQuick

// One of the round controls that stand where a title bar's buttons would be.
Item {
    id: root

    // In the coordinates of a 12 x 12 circle.
    required property string glyph
    required property string name
    // Whether the glyph stands on a disc, as those that act on the window do.
    property bool circle: true
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

    Rectangle {
        anchors.centerIn: parent
        width: 12
        height: 12
        radius: 6
        color: !root.circle ? "transparent" : area.containsMouse ? root.hoverColor : Qt.rgba(1, 1, 1, 0.16)
        opacity: area.pressed ? 0.7 : 1
        border.width: root.activeFocus ? 1 : 0
        border.color: "white"

        Canvas {
            id: canvas

            anchors.fill: parent
            opacity: area.containsMouse || root.activeFocus ? 1 : 0.55
            Component.onCompleted: root.glyphChanged.connect(requestPaint)
            onPaint: {
                const context = getContext("2d");
                context.reset();
                context.strokeStyle = "white";
                context.lineWidth = 1.2;
                context.lineCap = "round";
                context.path = root.glyph;
                context.stroke();
            }
        }
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.activated()
    }
}
