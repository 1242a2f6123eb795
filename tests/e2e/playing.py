"""Previews under the pointer, and the viewers."""

import re
import subprocess

import samples
import scenario
from accessibility import wait_until
from scenario import BUTTON, FLAGS, Scenario


def players(mosa):
    """How many threads of players the program has."""
    return subprocess.run(f"cat /proc/{mosa.process.pid}/task/*/comm", shell=True, capture_output=True,
                          text=True, check=False).stdout.count("mpv/")


class Playing(Scenario):
    def test_a_preview_follows_the_pointer_and_a_click_makes_it_audible(self):
        mosa = self.mosa(samples.folder(self.home / "clips", videos=2))
        cell = mosa.see(name="Play preview: clip 1.mp4", value="Preview stopped")
        other = mosa.see(name="Play preview: clip 2.mp4", value="Preview stopped")
        mosa.point(cell)
        mosa.see(name=cell.name, value="Preview active")
        mosa.see(BUTTON, "Unmute", value="Audio off")
        mosa.click(cell)
        mosa.see(BUTTON, "Mute", value=re.compile("^Audio on"))
        mosa.see("slider")
        mosa.point(other)
        mosa.see(name=other.name, value="Preview active")
        mosa.see(name=cell.name, value="Preview stopped")
        mosa.point_away()
        mosa.see(name=other.name, value="Preview stopped")

    def test_the_controls_of_an_upright_video_find_room_in_its_cell(self):
        (self.home / "clips").mkdir()
        samples.video(self.home / "clips/upright.mp4", size="120x900")
        mosa = self.mosa(self.home / "clips")
        mosa.point(mosa.see(name="Play preview: upright.mp4"))
        mosa.see("slider", "Position")
        left, _, width, _ = mosa.see(name="Play preview: upright.mp4").rectangle
        taken = [mosa.see(BUTTON, name).rectangle for name in ("Remove from Grid", "Unmute", "Flag")]
        for index, (x, y, w, h) in enumerate(taken):
            self.assertTrue(left <= x and x + w <= left + width, f"{taken} within {left} + {width}")
            for x2, y2, w2, h2 in taken[:index]:
                self.assertTrue(x2 + w2 <= x or x + w <= x2 or y2 + h2 <= y, f"{taken} are apart")

    def test_a_video_opens_plays_pauses_and_closes(self):
        folder = samples.folder(self.home / "clips", videos=1)
        samples.video(folder / "long.mp4", seconds=44)
        mosa = self.mosa(folder)
        mosa.click(mosa.see(name="Play preview: long.mp4"), count=2)
        mosa.see(name="long.mp4")
        mosa.see(BUTTON, "Cycle Subtitles")
        mosa.see(name="0:44")
        mosa.see(BUTTON, "Pause")
        # A click beside the controls does nothing.
        mosa.click(mosa.see("frame"))
        mosa.see(BUTTON, "Pause")
        mosa.key("space")
        mosa.see(BUTTON, "Play")
        # The pointer reaches what lies between the steps of the keys.
        mosa.click(mosa.see("slider", "Position"))
        mosa.see(name=re.compile("^0:2[12]$"))
        mosa.see("slider", "Position").number = 30.5
        mosa.see(name="0:30")
        mosa.see("slider", "Volume").number = 55
        wait_until(lambda: mosa.see("slider", "Volume").number == 55, "the volume")
        mosa.press(BUTTON, "Flag")
        mosa.see(BUTTON, "Remove Flag")
        mosa.press(BUTTON, "Play")
        mosa.see(BUTTON, "Pause")
        # The newest comes first.
        mosa.key("Right")
        mosa.see(name="clip 1.mp4")
        mosa.key("Left")
        mosa.see(name="long.mp4")
        mosa.see(BUTTON, "Pause")
        mosa.press(BUTTON, "Mute")
        mosa.see(BUTTON, "Unmute", value="Audio off")
        for close in (lambda: mosa.key("Escape"), lambda: mosa.press(BUTTON, "Close"),
                      lambda: mosa.click(mosa.see("frame"), count=2)):
            close()
            mosa.see_gone(BUTTON, "Cycle Subtitles")
            mosa.point_away()
            wait_until(lambda: not players(mosa), "the player to end with its view")
            mosa.click(mosa.see(name="Play preview: long.mp4"), count=2)
            mosa.see(BUTTON, "Pause")
            self.assertGreater(players(mosa), 0)

    def test_photos_open_step_and_close(self):
        mosa = self.mosa(samples.folder(self.home / "album", photos=3))
        # What had the focus before gets no keys while the viewer covers it, and has the focus again afterwards.
        self.choose(mosa, "Deselect Page")
        focused = lambda: mosa.see(name=FLAGS).has("focused")  # noqa: E731
        wait_until(focused, "the focus on the button of the menu")
        mosa.click(mosa.see(name="Open photo: photo 1.jpg"), count=2)
        mosa.see_gone(name="Photos 3")
        mosa.key("Left", "Right", "space", "Down")
        mosa.key("Escape")
        mosa.see(name="Photos 3")
        wait_until(focused, "the focus back on the button of the menu")


if __name__ == "__main__":
    scenario.main()
