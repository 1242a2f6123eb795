"""What happens to the user's flagged files."""

import pathlib

import samples
import scenario
from scenario import BUTTON, FLAGS, Scenario


def names(folder):
    return sorted(path.name for path in pathlib.Path(folder).iterdir())


class Files(Scenario):
    def test_flagged_files_go_to_the_trash_once_confirmed(self):
        folder = samples.folder(self.home / "album", photos=3)
        mosa = self.mosa(folder)
        self.flag(mosa, "Open photo: photo 2.jpg")
        self.choose(mosa, "Move Flagged to Trash…")
        mosa.see("alert", "Move 1 item to Trash?", value="The files can be recovered from the Trash.")
        mosa.press(BUTTON, "Cancel")
        mosa.see_gone(name="Move 1 item to Trash?")
        self.assertEqual(len(names(folder)), 3, "cancelling changes nothing")

        self.choose(mosa, "Move Flagged to Trash…")
        mosa.press(BUTTON, "Move to Trash")
        mosa.see(name="Moved 1 item to Trash")
        mosa.see_gone(name="Open photo: photo 2.jpg")
        self.assertEqual(names(folder), ["photo 1.jpg", "photo 3.jpg"])
        information = (self.home / "data/Trash/info/photo 2.jpg.trashinfo").read_text()
        self.assertRegex(information, r"(?m)^Path=.*/album/photo%202\.jpg$")
        self.assertTrue((self.home / "data/Trash/files/photo 2.jpg").is_file())

    def test_flagged_files_move_into_the_chosen_folder(self):
        folder = samples.folder(self.home / "album", photos=5)
        target = samples.folder(self.home / "best")
        (target / "photo 1.jpg").write_text("another one")
        mosa = self.mosa(folder)
        self.flag(mosa, *(f"Open photo: photo {number}.jpg" for number in (1, 2, 4)))
        # Another program is faster with one of them.
        (folder / "photo 4.jpg").unlink()
        self.choose(mosa, "Move Flagged…")
        mosa.see(name="Move flagged files to")
        mosa.see("text", "Folder path")
        mosa.key("ctrl+a")
        mosa.type(str(target))
        mosa.press(BUTTON, "Move Here")
        mosa.see(name="Moved 2 items")
        mosa.see("alert", "1 file could not be moved.")
        mosa.see_gone(name="Open photo: photo 1.jpg")
        mosa.see(name=FLAGS, value="1")
        self.assertEqual(names(folder), ["photo 3.jpg", "photo 5.jpg"])
        self.assertEqual(names(target), ["photo 1 2.jpg", "photo 1.jpg", "photo 2.jpg"])
        self.assertEqual((target / "photo 1.jpg").read_text(), "another one")
        mosa.press(BUTTON, "Dismiss")
        mosa.see_gone(name="1 file could not be moved.")


if __name__ == "__main__":
    scenario.main()
