pragma ComponentBehavior: Bound

import QtQuick
import Mosa.State
import Mosa.UI

// Everything in the window: what the program shows, and what a title bar would have offered.
Item {
    id: root

    required property AppState state
    required property MainWindow host

    ContentView {
        anchors.fill: parent
        state: root.state
    }

    WindowControls {
        host: root.host
        visible: !root.host.fullScreen
    }

    ResizeBands {
        anchors.fill: parent
        host: root.host
        visible: !root.host.fullScreen && !root.host.maximised
    }
}
