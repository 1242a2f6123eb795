pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// A slider from 0 over a value that something else keeps: it follows current and maximum, except while it is
/// dragged, and reports what the user makes of it, by pointer, keyboard or the accessibility bus.
MosaSlider {
    id: slider

    required property real current
    required property real maximum

    // The range under the names that the accessibility bus asks for.
    readonly property real minimumValue: from
    readonly property real maximumValue: to

    property bool following: false

    signal edited(real value)

    function follow(): void {
        if (pressed)
            return;
        following = true;
        to = maximum;
        value = current;
        following = false;
    }

    onCurrentChanged: follow()
    onMaximumChanged: follow()
    onPressedChanged: follow()
    onValueChanged: {
        if (!following)
            edited(value);
    }
    Component.onCompleted: follow()

    // For keys and assistive technology: the values of a pointer would be rounded to steps, too.
    stepSize: pressed ? 0 : 5

    // The arrow keys to the left and right may belong to the window.
    Keys.onUpPressed: increase()
    Keys.onDownPressed: decrease()
}
