pragma ComponentBehavior: Bound

import QtQuick

/// Which row of the list that it is in lies under the pointer. Rows that scroll by below a pointer that rests, and are
/// used again elsewhere, may not notice that it has left them.
HoverHandler {
    required property ListView view
    required property real rowHeight
    /// -1 for none.
    readonly property int row: hovered ? Math.floor((point.position.y - view.originY) / rowHeight) : -1
}
