pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// The still picture of a media file on a dark layer, or an icon of its kind until there is one.
Item {
    id: root

    required property mediaFile item

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.55)
    }

    ThumbnailImage {
        id: picture

        anchors.fill: parent
        item: root.item
    }

    SymbolIcon {
        anchors.centerIn: parent
        visible: !picture.hasImage
        name: root.item.kind === MediaKind.Video ? "film.stack" : "photo"
        size: 30
        weight: Font.Light
        color: Qt.rgba(1, 1, 1, 0.36)
    }
}
