pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// An ultra-thin translucent panel.
SmoothRectangle {
    radius: 10
    color: MosaLook.ultraThinMaterial
    borderColor: MosaLook.hairline
    borderWidth: 1
}
