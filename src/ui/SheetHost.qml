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
    /// Any sheet is up, and has seen where the focus was before: what lies below is to be out of reach. False again
    /// before the sheet's end gives the focus back.
    readonly property bool covering: arrange.item !== null || question.item !== null || choice.item !== null

    Loader {
        id: arrange
        anchors.fill: parent
        active: host.state.arrangeOpen && host.state.activeTab === MediaKind.Video && host.state.videoCount >= 2
        sourceComponent: ArrangeVideosView {
            state: host.state
        }
    }
    Loader {
        id: choice
        anchors.fill: parent
        active: host.chooser?.active ?? false
        sourceComponent: FolderChooserSheet {
            chooser: host.chooser
        }
    }
    Loader {
        id: question
        anchors.fill: parent
        active: host.alerts?.active ?? false
        sourceComponent: AlertSheet {
            presenter: host.alerts
        }
    }
}
