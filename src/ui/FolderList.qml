pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// The chooser's list of folders: a click chooses one, a double click or the right arrow key goes into it, the
/// left one goes up.
Item {
    id: root

    required property FolderBrowser browser

    activeFocusOnTab: true
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Folders in %1").arg(browser.folderName)

    Keys.onUpPressed: browser.select(Math.max(browser.currentRow - 1, 0))
    Keys.onDownPressed: browser.select(browser.currentRow + 1)
    Keys.onRightPressed: browser.enter(browser.currentRow)
    Keys.onLeftPressed: browser.up()
    Keys.onPressed: event => {
        const rows = view.count - 1;
        const page = Math.max(Math.floor(view.height / 26) - 1, 1);
        const targets = {
            [Qt.Key_Home]: 0,
            [Qt.Key_End]: rows,
            [Qt.Key_PageUp]: Math.max(root.browser.currentRow - page, 0),
            [Qt.Key_PageDown]: Math.min(root.browser.currentRow + page, rows)
        };
        event.accepted = event.key in targets;
        if (event.accepted) {
            root.browser.select(targets[event.key]);
        }
    }

    SmoothRectangle {
        anchors.fill: parent
        radius: 8
        color: Qt.rgba(0, 0, 0, 0.24)
        borderColor: root.activeFocus ? MosaLook.focusRing : MosaLook.hairline
        borderWidth: 1
    }
    ListView {
        id: view

        anchors.fill: parent
        anchors.margins: 5
        clip: true
        model: root.browser
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        // Rows beyond the edge are made while idle, and Qt complains when the list gets shorter meanwhile.
        cacheBuffer: 0
        currentIndex: root.browser.currentRow
        highlightMoveDuration: 0
        highlightFollowsCurrentItem: false
        onCurrentIndexChanged: positionViewAtIndex(currentIndex, ListView.Contain)
        RowHover {
            id: hover

            view: view
            rowHeight: 26
        }
        T.ScrollBar.vertical: MosaScrollBar {}

        delegate: SheetRow {
            required property int index
            required name

            width: view.width
            symbol: "folder.fill"
            current: index === root.browser.currentRow
            emphasised: root.activeFocus
            hovered: hover.row === index
            onClicked: {
                root.forceActiveFocus(Qt.MouseFocusReason);
                root.browser.select(index);
            }
            onDoubleClicked: root.browser.enter(index)
        }
    }
    MosaSpinner {
        id: spinner

        anchors.centerIn: parent
        size: 24
        visible: late.elapsed && root.browser.busy
    }
    // A list that comes at once shows no spinner before.
    Timer {
        id: late

        property bool elapsed: false

        interval: 250
        running: root.browser.busy
        onRunningChanged: elapsed = elapsed && running
        onTriggered: elapsed = true
    }
    MosaText {
        anchors.centerIn: parent
        visible: !root.browser.busy && view.count === 0
        text: qsTr("No folders here")
        color: MosaLook.tertiary
    }
}
