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
    /// Any sheet is up, and has seen where the focus was before: what lies below is to be out of reach.
    readonly property bool covering: arrange.item !== null || question.item !== null || choice.item !== null

    component Sheet: Loader {
        anchors.fill: parent
        onLoaded: kept.copy((item as MosaSheet).formerFocus)
        // What lay below is enabled again by then.
        onItemChanged: {
            if (item === null)
                Qt.callLater(kept.giveBack);
        }

        FormerFocus {
            id: kept
        }
    }

    Sheet {
        id: arrange
        active: host.state.arrangeOpen && host.state.activeTab === MediaKind.Video && host.state.videoCount >= 2
        sourceComponent: ArrangeVideosView {
            state: host.state
        }
    }
    Sheet {
        id: choice
        active: host.chooser?.active ?? false
        sourceComponent: FolderChooserSheet {
            chooser: host.chooser
        }
    }
    Sheet {
        id: question
        active: host.alerts?.active ?? false
        sourceComponent: AlertSheet {
            presenter: host.alerts
        }
    }
}
