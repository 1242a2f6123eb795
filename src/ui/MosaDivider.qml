pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// The standard separator line.
Rectangle {
    height: 1
    color: MosaLook.separator
}
