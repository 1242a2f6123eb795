pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// Shows one photo over the whole window, to be magnified and moved by pinch, touchpad, wheel and drag.
Item {
    id: root

    required property mediaFile item
    required property AppState state

    Accessible.role: Accessible.Graphic
    Accessible.name: item.url.lastPathComponent

    PhotoZoom {
        id: photoZoom
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
    }
    FullPhotoImage {
        id: image

        anchors.fill: parent
        url: root.item.url
        zoom: photoZoom.zoom
        offset: photoZoom.offset
    }
    MosaSpinner {
        anchors.centerIn: parent
        size: 32
        visible: !image.loaded
    }

    PinchHandler {
        target: null
        enabled: image.loaded
        minimumRotation: 0
        maximumRotation: 0
        onActiveScaleChanged: {
            if (active) {
                photoZoom.magnify(activeScale);
            }
        }
        onActiveChanged: {
            if (!active) {
                photoZoom.endMagnification();
            }
        }
    }
    WheelHandler {
        acceptedModifiers: Qt.ControlModifier
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        enabled: image.loaded
        onWheel: event => {
            photoZoom.magnify(Math.pow(1.0018, event.angleDelta.y));
            photoZoom.endMagnification();
        }
    }
    DragHandler {
        target: null
        enabled: image.loaded
        dragThreshold: 10
        onActiveTranslationChanged: {
            if (active) {
                photoZoom.drag(Qt.point(activeTranslation.x, activeTranslation.y));
            }
        }
        onActiveChanged: {
            if (!active) {
                photoZoom.endDrag();
            }
        }
    }
    TapHandler {
        enabled: image.loaded
        onDoubleTapped: root.state.closeFullItem()
    }

    Row {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 16
        spacing: 10

        ItemFlagButton {
            anchors.verticalCenter: parent.verticalCenter
            item: root.item
            state: root.state
        }
        MosaPlainButton {
            implicitWidth: 28
            implicitHeight: 28
            cornerRadius: 14
            fill: MosaLook.ultraThinMaterial
            symbol: "xmark"
            symbolSize: 13
            toolTip: qsTr("Close")
            onClicked: root.state.closeFullItem()
        }
    }
}
