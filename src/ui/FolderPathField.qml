pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// The chooser's path. While the user types, the rest of the first folder that it could be follows, selected:
/// typing on replaces it, Tab takes it and goes into that folder.
SheetTextField {
    id: field

    required property FolderBrowser browser
    property string typed

    signal listRequested

    accessibleName: qsTr("Folder path")

    function complete(): void {
        const name = browser.completion();
        const length = text.length;
        if (name !== "" && cursorPosition === length) {
            text = text.slice(0, text.lastIndexOf("/") + 1) + name;
            select(text.length, length);
        }
    }

    onTextEdited: {
        const grown = text.length > typed.length;
        typed = text;
        browser.edit(text);
        if (grown) {
            complete();
        }
    }
    Keys.onTabPressed: event => {
        event.accepted = selectedText !== "" && selectionEnd === text.length;
        if (event.accepted) {
            browser.openPath(text);
        }
    }
    Keys.onDownPressed: {
        browser.select(Math.max(browser.currentRow, 0));
        listRequested();
    }

    Connections {
        target: field.browser
        function onTextChanged() {
            if (field.text !== field.browser.text) {
                field.text = field.browser.text;
                field.typed = field.text;
                field.cursorPosition = field.text.length;
            }
        }
    }
    Component.onCompleted: {
        text = browser.text;
        typed = text;
    }
}
