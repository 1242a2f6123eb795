pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// The context menu of whichever cell asked for it last.
MosaMenu {
    id: menu

    required property AppState state
    /// Shows and opens files: showInFileManager(url), openInDefaultApp(url).
    required property var desktop
    property mediaFile item

    title: item.url.lastPathComponent

    function openFor(item: mediaFile, cell: Item, position: point): void {
        menu.item = item;
        openAt(cell, position);
    }

    MosaMenuItem {
        text: menu.state.flagCount >= 0 && menu.state.isFlagged(menu.item.id) ? qsTr("Remove Flag") : qsTr("Flag")
        onTriggered: menu.state.toggleFlag(menu.item)
    }
    MosaMenuItem {
        text: qsTr("Show in Finder")
        onTriggered: menu.desktop?.showInFileManager(menu.item.url)
    }
    MosaMenuItem {
        text: qsTr("Open in Default App")
        onTriggered: menu.desktop?.openInDefaultApp(menu.item.url)
    }
}
