// Not bound: the Loader of Qt 6.4 refuses bound components.

import QtQuick
import Mosa.State
import Mosa.UI

/// The still picture of a media file on a dark layer, or an icon of its kind until there is one.
Item {
    id: root

    required property mediaFile item
    property alias backing: picture.backing
    property alias keepsOldPicture: picture.keepsOldPicture

    ThumbnailImage {
        id: picture

        anchors.fill: parent
        item: root.item
        backing: Qt.rgba(0, 0, 0, 0.55)
    }

    Loader {
        anchors.centerIn: parent
        active: !picture.hasImage
        sourceComponent: SymbolIcon {
            name: root.item.kind === MediaKind.Video ? "film.stack" : "photo"
            size: 30
            weight: Font.Light
            color: Qt.rgba(1, 1, 1, 0.36)
        }
    }
}
