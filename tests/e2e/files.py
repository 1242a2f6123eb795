"""What happens to the user's flagged files."""

import pathlib

import samples
import scenario
from scenario import BUTTON, Scenario


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


if __name__ == "__main__":
    scenario.main()
