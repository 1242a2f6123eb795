"""The window itself: its edges, place, states and end, and what comes to it from outside."""

import itertools
import os
import pathlib
import signal
import socket
import subprocess
import time

import samples
import scenario
from accessibility import wait_until
from scenario import BUTTON, MENU_ITEM, Scenario


def xdotool(*arguments):
    return subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True, check=False).stdout


def window_of(process):
    """The window's id, once it is on the screen."""
    return wait_until(lambda: xdotool("search", "--onlyvisible", "--pid", process.pid, "--name", "^Mosa$").split(),
                      "the window on the screen", 60)[-1]


def frame(window):
    """x, y, width and height in pixels."""
    values = dict(line.split("=") for line in xdotool("getwindowgeometry", "--shell", window).split())
    return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))


def settled(window):
    """The frame once it has not changed for a moment."""
    def steady():
        before = frame(window)
        time.sleep(0.3)
        return before if frame(window) == before else None
    return wait_until(steady, "a window that keeps still")


def drag(window, start, end):
    """Presses at a point of the screen and moves until the window follows; only then is the way gone to its end. A
    window manager that is asked to move a window after the button is up moves nothing."""
    before = frame(window)
    # Two places, since wherever the pointer is when the window manager takes over, the window has not moved yet.
    near = itertools.cycle([a + (far if b > a else -far) for a, b in zip(start, end)] for far in (12, 16))
    xdotool("mousemove", *start, "mousedown", 1)

    def follows():
        xdotool("mousemove", *next(near))
        return frame(window) != before
    try:
        wait_until(follows, "the window to follow the pointer")
        xdotool("mousemove", *end)
        return settled(window)
    finally:
        xdotool("mouseup", 1)


class Window(Scenario):
    def opened(self, *arguments, **environment):
        mosa = self.mosa(*arguments, **environment)
        mosa.see(BUTTON, "Close")
        return mosa, window_of(mosa.process)

    def test_ends_by_every_way_out(self):
        ways = {
            "the close control": lambda mosa: mosa.press(BUTTON, "Close"),
            "Ctrl+Q": lambda mosa: mosa.key("ctrl+q"),
            "the window manager": lambda mosa: mosa.key("alt+F4"),
            "an interrupt": lambda mosa: mosa.process.send_signal(signal.SIGINT),
        }
        for name, leave in ways.items():
            with self.subTest(name):
                mosa, _ = self.opened()
                leave(mosa)
                self.assertEqual(mosa.wait(), 0)

    def test_place_is_kept(self):
        mosa, window = self.opened()
        x, y, width, height = settled(window)
        self.assertEqual((width, height), (1440, 900))
        # By its background, well away from every control.
        moved = drag(window, (x + 300, y + height - 40), (x + 340, y + height - 10))
        self.assertEqual(moved[2:], (width, height), "the background moves the window")
        x, y = moved[:2]
        # By its lower right corner, beyond the least size; then by two edges.
        self.assertEqual(drag(window, (x + width - 3, y + height - 3), (x + 200, y + 200)), (x, y, 920, 620))
        wider = drag(window, (x + 2, y + 300), (x - 18, y + 300))
        self.assertEqual(wider, (x - 20, y, 940, 620))
        higher = drag(window, (x + 400, y + 2), (x + 400, y - 8))
        self.assertEqual(higher, (x - 20, y - 10, 940, 630))
        # The program learns of it from the window manager, and may still be drawing.
        wait_until(lambda: mosa.see("frame").rectangle == higher, "the program to know its frame")

        mosa.press(BUTTON, "Zoom")
        mosa.see(BUTTON, "Zoom", value="Maximised")
        mosa.press(BUTTON, "Close")
        self.assertEqual(mosa.wait(), 0)
        mosa, window = self.opened()
        mosa.see(BUTTON, "Zoom", value="Maximised")
        mosa.press(BUTTON, "Zoom")
        wait_until(lambda: frame(window) == higher, "the frame of before")
        mosa.key("F11")
        mosa.see_gone(BUTTON, "Zoom")
        mosa.end()
        _, window = self.opened()
        wait_until(lambda: frame(window) == higher, "the frame beneath the full screen")

    def test_zooms_and_fills_the_screen(self):
        mosa, window = self.opened()
        small = settled(window)
        spot = small[0] + 300, small[1] + small[3] - 40
        whole = 0, 0, 1600, 1000
        zoomed = lambda: mosa.see(BUTTON, "Zoom", value="Maximised")  # noqa: E731
        filled = lambda: mosa.see_gone(BUTTON, "Zoom")  # noqa: E731
        ways = {
            "the zoom control": (lambda: mosa.press(BUTTON, "Zoom"), zoomed),
            "a double click": (lambda: xdotool("mousemove", *spot, "click", "--repeat", 2, "--delay", 60, 1), zoomed),
            "F11": (lambda: mosa.key("F11"), filled),
            "F": (lambda: mosa.key("f"), filled),
        }
        for name, (act, large) in ways.items():
            with self.subTest(name):
                act()
                large()
                wait_until(lambda: frame(window) == whole, "the whole screen")
                act()
                mosa.see(BUTTON, "Zoom", value="")
                wait_until(lambda: frame(window) == small, "the frame of before")
        mosa.press(BUTTON, "Zoom")
        mosa.key("F11")
        filled()
        mosa.key("F11")
        zoomed()

    def test_what_it_has_not_drawn_yet_is_dark(self):
        mosa, window = self.opened()
        xdotool("windowsize", window, 940, 640)
        x, y, _, _ = settled(window)
        mosa.process.send_signal(signal.SIGSTOP)
        try:
            xdotool("windowsize", window, 1300, 800)
            self.assertEqual(settled(window)[2:], (1300, 800))
            spot = subprocess.run(["import", "-window", "root", "-crop", f"1x1+{x + 1200}+{y + 700}", "-depth", "8",
                                   "rgb:-"], capture_output=True, check=True).stdout
        finally:
            mosa.process.send_signal(signal.SIGCONT)
        self.assertEqual(spot.hex(), "09090a")

    def test_controls_are_where_they_say_on_scaled_screens(self):
        for scale in ("1.25", "1.5", "2"):
            with self.subTest(scale):
                mosa, window = self.opened(QT_SCALE_FACTOR=scale)
                self.assertEqual(mosa.see("frame").rectangle[:2], settled(window)[:2])
                mosa.click(mosa.see(BUTTON, "Menu"))
                mosa.click(mosa.see(MENU_ITEM, "About Mosa"))
                mosa.click(mosa.see("dialog", "About Mosa").find_all(BUTTON, "Close")[0])
                mosa.see_gone("dialog")
                self.assertEqual(mosa.end(), 0)

    def test_a_second_start_hands_over_its_first_folder_and_raises(self):
        mosa, window = self.opened()
        xdotool("windowminimize", window)
        wait_until(lambda: not xdotool("search", "--onlyvisible", "--name", "^Mosa$"), "the window to go")
        second = self.mosa(samples.folder(self.home / "ä b", photos=2), samples.folder(self.home / "c", photos=1))
        self.assertEqual(second.wait(), 0)
        mosa.see(name="Photos 2")
        wait_until(lambda: xdotool("getactivewindow").strip() == window, "the window in front")

    def test_of_several_dropped_folders_the_first_opens(self):
        mosa, _ = self.opened()
        folders = [samples.folder(self.home / name, photos=count) for name, count in (("caf\udce9 1", 2), ("b", 1))]
        source = subprocess.Popen([os.environ["MOSA_DRAG_SOURCE"], *[folder.as_uri() for folder in folders]],
                                  stdout=subprocess.PIPE, text=True)
        self.addCleanup(source.stdout.close)
        self.addCleanup(source.wait)
        self.addCleanup(source.kill)
        wait_until(lambda: xdotool("search", "--onlyvisible", "--name", "^drag source$"), "the drag's source")
        xdotool("mousemove", 20, 20, "mousedown", 1)
        for point in ((30, 30), (45, 45), (300, 300), (500, 400), (501, 400)):
            xdotool("mousemove", *point)
            time.sleep(0.3)
        # A drop where the target has not said yet that it takes it is none at all.
        time.sleep(1)
        xdotool("mouseup", 1)
        mosa.see(name="Photos 2")
        self.assertEqual(source.stdout.readline(), "copied\n", "the source keeps its files")

    def test_starts_where_the_bus_is_stuck(self):
        path = pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / "stuck"
        with socket.socket(socket.AF_UNIX) as bus:
            bus.bind(str(path))
            bus.listen(5)
            address = f"unix:path={path}"
            began = time.monotonic()
            window_of(self.mosa(DBUS_SESSION_BUS_ADDRESS=address, DBUS_SYSTEM_BUS_ADDRESS=address).process)
            self.assertLess(time.monotonic() - began, 20, "a connection would have timed out after 25 s")


if __name__ == "__main__":
    scenario.main()
