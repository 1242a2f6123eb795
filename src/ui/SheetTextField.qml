pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Mosa.UI

/// A one-line text field of a sheet. Its name on the accessibility bus is accessibleName.
T.TextField {
    id: field

    property string accessibleName

    implicitHeight: 28
    implicitWidth: 200
    leftPadding: 8
    rightPadding: 8
    verticalAlignment: TextInput.AlignVCenter
    font: MosaLook.body
    color: MosaLook.primary
    placeholderTextColor: MosaLook.tertiary
    selectionColor: MosaLook.mosaRed
    selectedTextColor: "white"
    selectByMouse: true
    activeFocusOnTab: true

    Accessible.role: Accessible.EditableText
    Accessible.name: accessibleName
    Accessible.ignored: !visible

    background: SmoothRectangle {
        radius: 6
        color: Qt.rgba(0, 0, 0, 0.32)
        borderColor: field.activeFocus ? MosaLook.focusRing : MosaLook.separator
        borderWidth: 1
    }
}
