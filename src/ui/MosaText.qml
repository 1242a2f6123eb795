pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A text of the look, also read out as one.
Text {
    font: MosaLook.body
    color: MosaLook.primary
    textFormat: Text.PlainText
    // Also where the text is a name in a script that runs the other way.
    horizontalAlignment: Text.AlignLeft

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: !visible || text === ""
}
