import QtQuick
import QtTest
import Mosa.State
import Mosa.UI

// The views of a folder that is open, in the order in which a user meets them.
TestCase {
    id: test
    name: "Browser"
    when: windowShown
    width: 920
    height: 620
    visible: true

    ContentView {
        id: content
        anchors.fill: parent
        state: world.state
    }

    /// All visible items below one whose property has the value.
    function findAll(item, property, value, found = []) {
        for (let i = 0; i < item.children.length; ++i) {
            const child = item.children[i];
            if (!child.visible)
                continue;
            if (child[property] === value)
                found.push(child);
            findAll(child, property, value, found);
        }
        return found;
    }
    function button(name) {
        return findAll(content, "toolTip", name).concat(findAll(content, "text", name))[0];
    }
    function shows(text) {
        return findAll(content, "text", text).length > 0;
    }

    function pageCount() {
        return findAll(content, "objectName", "toolbar")[0].pageCount;
    }

    function test_1_picker() {
        verify(shows("Open a folder of videos and photos."));
        verify(shows("You can also drop a folder here."));
        verify(!shows("Open Last"));
        mouseClick(button("Choose Folder…"));
        compare(world.chooserCount(), 1);
    }

    function test_2_toolbar() {
        verify(world.show("/f", 42, 3, 0));
        verify(shows("Videos 42"));
        verify(shows("Photos 3"));
        verify(shows("Arrange"));
        verify(!button("Back").enabled);
        tryVerify(() => pageCount() >= 2);
    }

    function test_3_pages() {
        const next = findAll(content, "symbol", "chevron.right")[0];
        const count = pageCount();
        verify(count >= 2);
        mouseClick(next);
        compare(world.state.page, 1);
        world.state.page = count + 3;
        verify(shows(count + " / " + count));
        mouseClick(next);
        compare(world.state.page, count - 1);
    }

    function test_4_removedVideos() {
        world.state.hideVideo(world.state.videos[0]);
        compare(world.state.page, 0);
        verify(shows("Videos 42"));
        mouseClick(button("1 removed · Reset"));
        verify(!shows("1 removed · Reset"));
    }

    function test_5_flaggedOnly() {
        world.state.viewFlaggedOnly = true;
        tryVerify(() => shows("No flagged items in this view"));
        mouseClick(button("Show All"));
        tryVerify(() => !shows("No flagged items in this view"));
    }

    function test_6_tabs() {
        mouseClick(button("Photos 3"));
        compare(world.state.activeTab, MediaKind.Photo);
        verify(!shows("Arrange"));
    }

    function test_7_cards() {
        verify(world.show("/g", 0, 2, 3));
        tryVerify(() => shows("card2"));
        verify(shows("12 items"));
        verify(button("Back").enabled);
        const card = findAll(content, "cornerRadius", 9)[0];
        compare(card.width, 242);
        compare(card.height, 66);
    }

    function test_8_scanAndError() {
        world.startScan("/h");
        tryVerify(() => shows("Scanning h…"));
        world.failScan("The folder could not be read.");
        tryVerify(() => shows("The folder could not be read."));
        mouseClick(findAll(content, "symbol", "xmark")[0]);
        verify(world.state.errorMessage === undefined);
        verify(!shows("The folder could not be read."));
    }

    function test_9_emptyTab() {
        world.state.activeTab = MediaKind.Video;
        tryVerify(() => shows("No videos here"));
    }
}
