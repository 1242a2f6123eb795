pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// The folder chooser that is up. Return chooses what the path field names; Escape cancels.
MosaSheet {
    id: sheet

    required property SheetFolderChooser chooser
    readonly property FolderBrowser browser: chooser.browser

    /// Chooses what the path field shows, however it got there.
    function accept(): void {
        if (pathField.text !== browser.text) {
            browser.edit(pathField.text);
        }
        browser.accept();
    }

    panelWidth: 720
    panelHeight: 500
    initialFocus: pathField

    Keys.onReturnPressed: accept()
    Keys.onEnterPressed: accept()
    Keys.onEscapePressed: chooser.cancel()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Up && (event.modifiers & Qt.AltModifier)) {
            sheet.browser.up();
            event.accepted = true;
        } else if (event.key === Qt.Key_H && (event.modifiers & Qt.ControlModifier)) {
            sheet.browser.showHidden = !sheet.browser.showHidden;
            event.accepted = true;
        }
    }

    accessibleName: chooser.title

    MosaText {
        id: title

        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.top: parent.top
        anchors.topMargin: 16
        text: sheet.chooser.title
        font: MosaLook.system(15, Font.DemiBold)
    }
    FolderPathField {
        id: pathField

        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.right: upButton.left
        anchors.rightMargin: 8
        anchors.top: title.bottom
        anchors.topMargin: 12
        browser: sheet.browser
        onListRequested: list.forceActiveFocus(Qt.TabFocusReason)
    }
    MosaPushButton {
        id: upButton

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: pathField.verticalCenter
        text: qsTr("Up")
        toolTip: qsTr("Go to the enclosing folder (Alt+Up)")
        enabled: sheet.browser.folderPath !== "/"
        onClicked: sheet.browser.up()
    }

    FolderPlaces {
        id: places

        anchors.left: parent.left
        anchors.leftMargin: 14
        anchors.top: pathField.bottom
        anchors.topMargin: 14
        anchors.bottom: footer.top
        anchors.bottomMargin: 10
        width: 168
        places: sheet.chooser.places
        currentPath: sheet.browser.folderPath
        onOpened: path => sheet.browser.openPath(path)
    }
    FolderList {
        id: list

        anchors.left: places.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.top: places.top
        anchors.bottom: places.bottom
        browser: sheet.browser
    }

    Item {
        id: footer

        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 18
        height: 28

        NewFolderControls {
            id: newFolder

            anchors.left: parent.left
            visible: sheet.chooser.createsFolders
            onCreated: name => {
                sheet.browser.createFolder(name);
                pathField.forceActiveFocus(Qt.OtherFocusReason);
            }
        }
        Text {
            anchors.left: newFolder.visible ? newFolder.right : parent.left
            anchors.leftMargin: newFolder.visible ? 12 : 0
            anchors.right: buttonRow.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: sheet.browser.error
            textFormat: Text.PlainText
            elide: Text.ElideRight
            font: MosaLook.system(12, Font.Normal)
            color: MosaLook.destructive
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
            Accessible.ignored: text === ""
        }
        Row {
            id: buttonRow

            anchors.right: parent.right
            spacing: 10

            MosaPushButton {
                text: qsTr("Cancel")
                onClicked: sheet.chooser.cancel()
            }
            MosaPushButton {
                text: sheet.chooser.prompt
                isDefault: true
                onClicked: sheet.accept()
            }
        }
    }
}
