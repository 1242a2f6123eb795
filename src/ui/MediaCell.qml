// Not bound: the Loader of Qt 6.4 refuses bound components.

import QtQuick
import Mosa.State
import Mosa.UI

/// One tile of the grid.
FocusScope {
    id: cell

    required property mediaFile item
    required property AppState state
    signal menuRequested(position: point)

    readonly property bool isVideo: item.kind === MediaKind.Video
    /// What the pointer finds on the cell is also there for the keyboard, once it has reached the cell, and while a
    /// preview runs that a screen reader started.
    readonly property bool controlled: preview.hovering || preview.controller !== null || hitArea.activeFocus || controls.activeFocus

    function followPointer(): void {
        if (pointer.hovered)
            preview.entered();
        else
            preview.left();
    }

    /// The cell shows another page's file: whatever pointer and keys were doing here was meant for the one before.
    function startOver(): void {
        focus = false;
        // What is hidden lets go of a press.
        visible = false;
        visible = true;
        // And this forgets that it is hovered: the next frame looks again.
        pointer.enabled = false;
        pointer.enabled = true;
    }

    MediaAspectRatioKey.value: item.aspectRatio

    onActiveFocusChanged: {
        if (!activeFocus && !pointer.hovered)
            preview.left();
    }

    MediaCellPreview {
        id: preview
        item: cell.item
        state: cell.state
        onFileChanged: cell.startOver()
    }
    HoverHandler {
        id: pointer

        // Not within the frame that brought the cell under a resting pointer: a player's start would hold that up.
        onHoveredChanged: Qt.callLater(cell.followPointer)
    }

    Loader {
        anchors.fill: parent
        active: preview.controller !== null
        sourceComponent: VideoPreviewLayer {
            controller: preview.controller
        }
    }
    MediaThumbnail {
        anchors.fill: parent
        item: cell.item
        backing: "black"
        keepsOldPicture: false
        visible: !(preview.controller?.hasRenderedFrame ?? false)
    }

    Item {
        id: hitArea

        anchors.fill: parent
        activeFocusOnTab: true

        Accessible.role: Accessible.Button
        Accessible.name: (cell.isVideo ? qsTr("Play preview: %1") : qsTr("Open photo: %1")).arg(cell.item.url.lastPathComponent)
        Accessible.description: !cell.isVideo ? "" : preview.controller !== null ? qsTr("Preview active") : qsTr("Preview stopped")
        Accessible.focusable: true
        // A screen reader's way in; its focus going elsewhere is the way out.
        Accessible.onPressAction: {
            hitArea.forceActiveFocus(Qt.OtherFocusReason);
            preview.clicked();
        }

        Keys.onReturnPressed: preview.doubleClicked()
        Keys.onEnterPressed: preview.doubleClicked()
        Keys.onSpacePressed: preview.clicked()
        // The key would otherwise be a shortcut of the window's.
        Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Menu
        Keys.onPressed: event => {
            const asks = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier));
            if (asks)
                cell.menuRequested(Qt.point(width / 2, height / 2));
            event.accepted = asks;
        }

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.LeftButton | Qt.RightButton
            onClicked: mouse => {
                if (mouse.button === Qt.LeftButton)
                    preview.clicked();
            }
            onPressed: mouse => {
                if (mouse.button === Qt.RightButton)
                    cell.menuRequested(Qt.point(mouse.x, mouse.y));
            }
            onDoubleClicked: mouse => {
                if (mouse.button === Qt.LeftButton)
                    preview.doubleClicked();
            }
        }
    }

    Loader {
        id: controls
        anchors.fill: parent
        active: cell.controlled
        sourceComponent: preview.controller !== null ? videoControls : photoControls
        // The control that had the keyboard's focus went with the ones before.
        onLoaded: if (activeFocus)
            hitArea.forceActiveFocus(Qt.TabFocusReason)
    }
    Component {
        id: videoControls

        MediaCellOverlay {
            focusShown: hitArea.activeFocus

            VideoCellControls {
                anchors.fill: parent
                item: cell.item
                state: cell.state
                controller: preview.controller
            }
        }
    }
    Component {
        id: photoControls

        MediaCellOverlay {
            focusShown: hitArea.activeFocus

            PhotoCellControls {
                anchors.fill: parent
                item: cell.item
                state: cell.state
            }
        }
    }
}
