"""The folder picker, and every way to hand over a folder."""

import os
import pathlib
import shutil
import signal

import samples
import scenario
from accessibility import wait_until
from scenario import BUTTON, Scenario

# Root reads what is forbidden to it, unless it gives up that privilege.
OBEDIENT = ["setpriv", "--bounding-set=-dac_override,-dac_read_search"] if os.geteuid() == 0 else []


class Opening(Scenario):
    def test_a_folder_on_the_command_line_opens_and_can_be_reopened(self):
        folder = samples.folder(self.home / "Holidays", videos=3, photos=2)
        mosa = self.mosa(folder)
        mosa.see(name="Videos 3")
        mosa.see(name="Photos 2")
        mosa.see(name="Play preview: clip 2.mp4")
        self.assertEqual(mosa.end(), 0)

        again = self.mosa()
        again.press(BUTTON, "Open Last")
        again.see(name="Videos 3")
        again.end()

        shutil.rmtree(folder)
        afterwards = self.mosa()
        afterwards.see(BUTTON, "Choose Folder…")
        afterwards.see(name="Mosa", role="label")
        afterwards.see(name="Open a folder of videos and photos.")
        afterwards.see(name="You can also drop a folder here.")
        self.assertEqual(afterwards.all(BUTTON, "Open Last"), [], "the last folder has gone")

    def test_a_url_of_a_file_opens_the_folder_around_it(self):
        folder = samples.folder(self.home / "100 % fun", videos=1)
        mosa = self.mosa((folder / "clip 1.mp4").as_uri())
        mosa.see(name="Videos 1")
        mosa.see(name="Play preview: clip 1.mp4")

    def test_relative_directories_in_the_environment_do_not_count(self):
        self.addCleanup(shutil.rmtree, "relative", ignore_errors=True)
        relative = dict.fromkeys(("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"), "relative")
        mosa = self.mosa(samples.folder(self.home / "clips", videos=1), **relative)
        mosa.see(name="Videos 1")
        thumbnails = pathlib.Path(os.environ["HOME"], ".cache/Mosa/Thumbnails")
        wait_until(lambda: any(thumbnails.glob("*.jpg")), "a thumbnail in the user's cache")
        mosa.end()
        self.assertFalse(pathlib.Path("relative").exists())

    def test_names_that_are_rarely_met_are_shown_and_opened(self):
        folder = os.fsencode(samples.folder(self.home / "odd"))
        long_name = b"x" * 251 + b".jpg"
        for name in (b"caf\xe9.jpg", b"two\nlines.jpg", long_name, " \u202eright-to-left.jpg".encode()):
            samples.photo(os.path.join(folder, name))
        nested = folder
        for part in (b"d\xe9p\xf4t\n", b"y" * 255):
            nested = os.path.join(nested, part)
        os.makedirs(nested)
        samples.photo(os.path.join(nested, b"deep.jpg"))
        mosa = self.mosa(folder)
        mosa.see(name="Photos 5")
        mosa.see(name="Open photo: two\nlines.jpg")
        mosa.see(name="Open photo: " + long_name.decode())
        mosa.click(mosa.see(name="Open photo: deep.jpg"), count=2)
        mosa.see(BUTTON, "Close")

    def test_an_unreadable_folder_says_so_and_the_message_can_be_dismissed(self):
        folder = samples.folder(self.home / "locked", photos=1)
        folder.chmod(0)
        self.addCleanup(folder.chmod, 0o700)
        mosa = self.mosa(folder, prefix=OBEDIENT)
        dismiss = mosa.see(BUTTON, "Dismiss")
        mosa.see(BUTTON, "Choose Folder…")
        dismiss.press()
        mosa.see_gone(BUTTON, "Dismiss")

    def test_ending_in_the_middle_of_work_is_clean(self):
        folder = samples.folder(self.home / "many")
        for index in range(400):
            samples.photo(folder / f"photo {index}.jpg", size="1600x1200")
        for moment in ("scanning", "making thumbnails"):
            with self.subTest(moment):
                mosa = self.mosa(folder)
                if moment == "scanning":
                    mosa.see(name="Mosa")
                else:
                    mosa.see(name="Photos 400")
                self.assertEqual(mosa.end(signal.SIGTERM), 0)


if __name__ == "__main__":
    scenario.main()
