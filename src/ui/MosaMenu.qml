pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// A pull-down or context menu. Its title is its name for assistive technology.
T.Menu {
    id: menu

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, 160)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    margins: 8
    padding: 5
    overlap: 1
    // A press beside it closes it and does nothing else.
    modal: true
    dim: false

    delegate: MosaMenuItem {}

    readonly property FormerFocus formerFocus: FormerFocus {}

    onAboutToShow: formerFocus.note(parent?.Window.activeFocusItem ?? null)
    onClosed: {
        const taken = parent?.Window.activeFocusItem ?? null;
        if (!taken || taken === parent?.Window.contentItem)
            formerFocus.giveBack();
    }

    /// Where something that begins at a place fits into the room.
    function fitting(place: real, room: real): real {
        return Math.max(margins, Math.min(place, room - margins));
    }

    /// Opens at a point of an item; near an edge of the window as close to it as there is room for.
    function openAt(item: Item, position: point): void {
        const wanted = item.mapToItem(null, position);
        const place = item.mapFromItem(null, fitting(wanted.x, item.Window.width - implicitWidth), fitting(wanted.y, item.Window.height - implicitHeight));
        popup(item, place.x, place.y);
    }

    /// Highlights the next entry that can be chosen, from the last to the first and back.
    function step(by: int): void {
        const start = by < 0 ? Math.max(currentIndex, 0) : currentIndex;
        for (let i = 1; i <= count; ++i) {
            const index = (start + by * i + count) % count;
            if ((itemAt(index) as T.MenuItem)?.enabled) {
                currentIndex = index;
                return;
            }
        }
    }

    contentItem: ListView {
        readonly property size entries: {
            let widest = 0;
            let total = 0;
            for (let i = 0; i < menu.count; ++i) {
                const item = menu.itemAt(i);
                widest = Math.max(widest, item?.implicitWidth ?? 0);
                total += item?.implicitHeight ?? 0;
            }
            return Qt.size(widest, total);
        }

        implicitWidth: entries.width
        // Known before the list has been laid out, unlike the height of its contents.
        implicitHeight: entries.height
        model: menu.contentModel
        interactive: contentHeight > height
        keyNavigationEnabled: false
        focus: true
        Keys.onUpPressed: menu.step(-1)
        Keys.onDownPressed: menu.step(1)
        clip: interactive
        currentIndex: menu.currentIndex
    }
    background: SmoothRectangle {
        radius: 9
        color: MosaLook.menuMaterial
        borderColor: MosaLook.hairline
        borderWidth: 1
        shadowColor: Qt.rgba(0, 0, 0, 0.5)
        shadowRadius: 20
        shadowOffset: 6
    }
}
