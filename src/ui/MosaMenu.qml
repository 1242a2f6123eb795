pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// A pull-down or context menu.
T.Menu {
    id: menu

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, 160)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    margins: 8
    padding: 5
    overlap: 1

    delegate: MosaMenuItem {}

    contentItem: ListView {
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < menu.count; ++i) {
                const item = menu.itemAt(i);
                if (item)
                    widest = Math.max(widest, item.implicitWidth);
            }
            return widest;
        }
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: contentHeight > height
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
