pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/// Which item had the keyboard's focus before something opened, to have it again afterwards; and why, so that a
/// focus that was to be seen is to be seen again.
QtObject {
    property Item item: null
    property int reason: Qt.PopupFocusReason

    function note(item: Item): void {
        this.item = item;
        reason = (item as T.Control)?.visualFocus ? Qt.TabFocusReason : Qt.PopupFocusReason;
    }

    function copy(other: FormerFocus): void {
        item = other.item;
        reason = other.reason;
    }

    function giveBack(): void {
        // Something else may cover it by now.
        if (!item?.enabled)
            return;
        item.forceActiveFocus(reason);
        // What is enabled again may have got its focus already, for no reason.
        const control = item as T.Control;
        if (control)
            control.focusReason = reason;
        item = null;
    }
}
