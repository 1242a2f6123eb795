pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// One page of the media in justified rows.
Item {
    id: view

    required property AppState state
    required property MediaPager pager
    required property var desktop

    clip: true

    Connections {
        target: view.pager

        // A frame begins with a look at what is under a resting pointer: there the cells are in place already.
        function onPageItemIdsChanged(): void {
            grid.forceLayout();
        }
    }
    JustifiedGrid {
        id: grid

        anchors.fill: parent
        anchors.margins: 6
        spacing: 6
        targetHeight: 245
        model: view.pager.pageItems

        Repeater {
            model: view.pager.pageItems

            MediaCell {
                id: cell
                state: view.state
                onMenuRequested: position => menu.openFor(cell.item, cell, position)
            }
        }
    }
    MediaCellMenu {
        id: menu
        state: view.state
        desktop: view.desktop
    }
}
