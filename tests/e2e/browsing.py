"""Tabs, pages, cards, flags, empty views and the order of videos."""

import re

import samples
import scenario
from accessibility import wait_until
from scenario import BUTTON, Scenario

PAGE = re.compile(r"^\d+ / \d+$")


class Browsing(Scenario):
    def test_pages_turn_by_button_and_by_key_and_stop_at_both_ends(self):
        mosa = self.mosa(samples.folder(self.home / "album", photos=40))
        pages = int(mosa.see(name=PAGE).name.split(" / ")[1])
        self.assertGreaterEqual(pages, 2)
        mosa.see(name=f"1 / {pages}")
        first = {cell.name for cell in mosa.all(name=re.compile("^Open photo: "))}
        mosa.press(BUTTON, "Next Page")
        mosa.see(name=f"2 / {pages}")
        second = {cell.name for cell in mosa.all(name=re.compile("^Open photo: "))}
        self.assertFalse(first & second, "no photo is on two pages")
        mosa.key("Left")
        mosa.see(name=f"1 / {pages}")
        mosa.press(BUTTON, "Previous Page")
        mosa.see(name=f"1 / {pages}")
        for _ in range(pages):
            mosa.press(BUTTON, "Next Page")
        mosa.see(name=f"{pages} / {pages}")

    def test_a_page_that_turns_under_a_resting_pointer_starts_anew(self):
        mosa = self.mosa(samples.folder(self.home / "album", videos=30, photos=40))
        for tab, cells, controls in (
            ("Videos 30", re.compile("^Play preview: "), {"Flag": None, "Unmute": "Audio off"}),
            ("Photos 40", re.compile("^Open photo: "), {"Flag": None}),
        ):
            mosa.click(mosa.see(name=tab))
            mosa.point(mosa.see(name=cells))
            for key in ("Right", "Left", "Right"):
                for name, value in controls.items():
                    mosa.see(BUTTON, name, value)
                    self.assertEqual(len(mosa.all(BUTTON, name)), 1)
                self.assertEqual(len(mosa.all(value="Preview active")), len(controls) - 1)
                before = mosa.all(name=cells)[0].name
                # Pressed on one file, released on another: a click on neither.
                mosa.button("mousedown")
                mosa.key(key)
                mosa.see_gone(name=before)
                mosa.button("mouseup")

    def test_a_card_leads_into_its_folder_and_back_leads_out(self):
        folder = samples.folder(self.home / "trip", photos=1)
        samples.folder(folder / "Day 1", videos=2, photos=2)
        samples.folder(folder / "only photos", photos=2)
        mosa = self.mosa(folder)
        mosa.see(name="Photos 3")
        mosa.click(mosa.see(BUTTON, re.compile("^Day 1")))
        mosa.see(name="Videos 2")
        mosa.see(name="Photos 2")
        mosa.press(BUTTON, "Back")
        mosa.see(name="Photos 3")
        mosa.press(BUTTON, re.compile("^Day 1"))
        mosa.see(name="Videos 2")
        mosa.key("Escape")
        mosa.see(name="Photos 3")

    def test_a_cell_flags_its_item_and_the_view_can_be_narrowed_to_it(self):
        mosa = self.mosa(samples.folder(self.home / "album", photos=3))
        self.flag(mosa, "Open photo: photo 2.jpg")
        self.choose(mosa, "View Flagged Only")
        mosa.see_gone(name="Open photo: photo 1.jpg")
        mosa.see(name="Open photo: photo 2.jpg")
        self.choose(mosa, "Deselect Page")
        mosa.see(name="No flagged items in this view")
        mosa.press(BUTTON, "Show All")
        mosa.see(name="Open photo: photo 1.jpg")

    def test_an_empty_folder_offers_another(self):
        mosa = self.mosa(samples.folder(self.home / "empty"))
        mosa.see(name="No videos here")
        mosa.see(BUTTON, "Choose Another Folder…")
        mosa.press(name="Photos 0")
        mosa.see(name="No photos here")

    def test_videos_are_removed_from_the_grid_and_restored(self):
        mosa = self.mosa(samples.folder(self.home / "clips", videos=3))
        mosa.point(mosa.see(name="Play preview: clip 2.mp4"))
        mosa.click(mosa.see(BUTTON, "Remove from Grid"))
        mosa.see_gone(name="Play preview: clip 2.mp4")
        # The newer one comes to lie under the resting pointer, and knows it.
        mosa.see(name="Play preview: clip 3.mp4", value="Preview active")
        mosa.see(name="Videos 3")
        mosa.press(BUTTON, "1 removed · Reset")
        mosa.see(name="Play preview: clip 2.mp4")

    def test_videos_are_arranged(self):
        mosa = self.mosa(samples.folder(self.home / "clips", videos=3))
        before = self.order(mosa)
        mosa.press(BUTTON, "Arrange")
        mosa.see(name="Arrange Videos")
        rows = self.rows(mosa)
        mosa.press(BUTTON, "Move Down")
        mosa.see("list item", value="1", name=rows[1])
        wait_until(lambda: self.rows(mosa) == [rows[1], rows[0], rows[2]], "the rows in their new order")
        mosa.key("Return")
        mosa.see_gone(name="Arrange Videos")
        self.assertEqual(self.order(mosa), [before[1], before[0], before[2]])
        mosa.press(BUTTON, "Arrange")
        mosa.press(BUTTON, "Reset")
        mosa.key("Return")
        mosa.see_gone(name="Arrange Videos")
        self.assertEqual(self.order(mosa), before)
        # The button has the focus again, but takes no keys while it is hidden.
        mosa.click(mosa.see(name="Photos 0"))
        mosa.see_gone(BUTTON, "Arrange")
        mosa.key("space")
        mosa.click(mosa.see(name="Videos 3"))
        mosa.see(BUTTON, "Arrange")
        self.assertEqual(mosa.all("dialog"), [])

    def rows(self, mosa):
        """As assistive technology goes through them."""
        return [row.name for row in mosa.all("list item")]

    def order(self, mosa):
        mosa.see(name=re.compile("^Play preview: "))
        cells = mosa.all(name=re.compile("^Play preview: "))
        return [cell.name for cell in sorted(cells, key=lambda cell: (cell.rectangle[1], cell.rectangle[0]))]


if __name__ == "__main__":
    scenario.main()
