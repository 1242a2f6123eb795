"""The same program on a Wayland compositor: start, open, look, play, view, close."""

import os
import pathlib
import subprocess

import samples
import scenario
from accessibility import wait_until
from scenario import BUTTON, Scenario


class Wayland(Scenario):
    def test_from_start_to_close(self):
        socket = "mosa-wayland"
        with open(self.home / "weston.log", "w") as log:
            weston = subprocess.Popen(["weston", "--backend=headless-backend.so", "--use-gl", "--width=1600",
                                       "--height=1000", f"--socket={socket}", "--idle-time=0", "--no-config"],
                                      stdout=log, stderr=log)
        self.addCleanup(weston.wait)
        self.addCleanup(weston.terminate)
        wait_until((pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / socket).exists, "the compositor")

        # A headless compositor has no seat; the toolkit's own input method for Wayland (6.4) cannot be without one.
        mosa = self.mosa(samples.folder(self.home / "both", videos=1, photos=2), WAYLAND_DISPLAY=socket,
                         QT_QPA_PLATFORM="wayland", QT_IM_MODULE="compose", DISPLAY="")
        mosa.see(name="Videos 1")
        # There is no pointer to move here: what a click does is done as a screen reader does it.
        mosa.press(name="Play preview: clip 1.mp4")
        mosa.see(name="Play preview: clip 1.mp4", value="Preview active")
        mosa.press(name="Photos 2")
        mosa.see(name="Open photo: photo 1.jpg")
        mosa.see(BUTTON, "Minimise")
        self.assertEqual(mosa.end(seconds=25), 0)


if __name__ == "__main__":
    scenario.main()
