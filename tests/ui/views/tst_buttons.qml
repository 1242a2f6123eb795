import QtQuick
import QtTest
import Mosa.UI

TestCase {
    id: test
    name: "Buttons"
    when: windowShown
    width: 400
    height: 300
    visible: true

    property int clicks: 0

    Row {
        id: row
        spacing: 10

        MosaPrimaryButton {
            id: primary
            text: "Choose Folder…"
            onClicked: test.clicks += 1
        }
        MosaToolbarButton {
            id: square
            symbol: "arrow.up.left.and.arrow.down.right"
            toolTip: "Fullscreen"
            onClicked: test.clicks += 1
        }
        MosaToolbarTextButton {
            id: text
            text: "Arrange"
            onClicked: test.clicks += 1
        }
        FlagButton {
            id: flag
            flagged: false
            onClicked: flagged = !flagged
        }
    }

    TextMetrics {
        id: metrics
        font: text.font
        text: text.text
    }

    function init() {
        clicks = 0;
    }

    function test_primaryShowsThePress() {
        const color = () => String(primary.background.color);
        compare(color(), String(MosaLook.mosaRed));
        mousePress(primary);
        compare(color(), String(MosaLook.faded(MosaLook.mosaRed, 0.78)));
        mouseRelease(primary);
        compare(color(), String(MosaLook.mosaRed));
        compare(clicks, 1);
    }

    function test_toolbarSizes() {
        compare(square.width, 28);
        compare(square.height, 28);
        compare(text.height, 28);
        verify(Math.abs(text.width - metrics.advanceWidth - 18) <= 1);
    }

    function test_flagTellsWhatAClickDoes() {
        compare(flag.Accessible.name, "Flag");
        mouseClick(flag);
        compare(flag.Accessible.name, "Remove Flag");
        compare(flag.symbol, "flag.fill");
        mouseClick(flag);
    }

    function test_nameFallsBackToTheToolTip() {
        compare(square.Accessible.name, "Fullscreen");
        compare(text.Accessible.name, "Arrange");
    }

    function test_returnClicksTheFocusedButton() {
        square.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Enter);
        keyClick(Qt.Key_Space);
        compare(clicks, 3);
    }
}
