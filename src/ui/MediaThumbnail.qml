import QtQuick
import Mosa.State
import Mosa.UI
Item { id: t
    required property mediaFile item
    Rectangle { anchors.fill: parent; color: Qt.rgba(0,0,0,0.55) }
    SymbolIcon { anchors.centerIn: parent; name: t.item.kind === MediaKind.Video ? "film.stack" : "photo"; size: 30; weight: Font.Light; color: Qt.rgba(1,1,1,0.36) }
}
