// Not bound: the Loader of Qt 6.4 refuses bound components.

import QtQuick
import Mosa.State
import Mosa.UI

/// The window's sheets, above everything else in it.
Item {
    id: host

    required property AppState state
    property SheetAlertPresenter alerts: null
    property SheetFolderChooser chooser: null
    /// A question is up, and the window's keys belong to it. The arrange sheet leaves them to the window.
    readonly property bool active: (alerts?.active ?? false) || (chooser?.active ?? false)

    Loader {
        anchors.fill: parent
        active: host.state.arrangeOpen && host.state.activeTab === MediaKind.Video && host.state.videoCount >= 2
        sourceComponent: ArrangeVideosView {
            state: host.state
        }
    }
    Loader {
        anchors.fill: parent
        active: host.chooser?.active ?? false
        sourceComponent: FolderChooserSheet {
            chooser: host.chooser
        }
    }
    Loader {
        anchors.fill: parent
        active: host.alerts?.active ?? false
        sourceComponent: AlertSheet {
            presenter: host.alerts
        }
    }
}
