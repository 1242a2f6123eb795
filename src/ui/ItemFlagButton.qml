pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

/// The flag toggle of one file.
FlagButton {
    required property mediaFile item
    required property AppState state

    // The count stands for the set, which has no property of its own.
    flagged: state.flagCount >= 0 && state.isFlagged(item.id)
    onClicked: state.toggleFlag(item)
}
