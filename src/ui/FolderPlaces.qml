pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// The chooser's places to start from.
ListView {
    id: view

    required property list<var> places
    required property string currentPath

    signal opened(path: string)

    model: places
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    keyNavigationEnabled: true
    currentIndex: 0
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Places")

    Keys.onSpacePressed: opened(places[currentIndex].path)
    Keys.onRightPressed: opened(places[currentIndex].path)

    RowHover {
        id: hover

        view: view
        rowHeight: 26
    }

    delegate: SheetRow {
        required property var modelData
        required property int index

        width: view.width
        symbol: modelData.symbol
        name: modelData.name
        current: modelData.path === view.currentPath || (view.activeFocus && ListView.isCurrentItem)
        emphasised: view.activeFocus && ListView.isCurrentItem
        hovered: hover.row === index
        onClicked: {
            view.currentIndex = index;
            view.opened(modelData.path);
        }
    }
}
