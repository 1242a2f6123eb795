pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A text of the look, also read out as one.
Text {
    font: MosaLook.body
    color: MosaLook.primary
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: !visible || text === ""
}
