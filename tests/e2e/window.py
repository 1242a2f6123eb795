"""The window itself: its controls, menu, edges, place and end, and the second start."""

import os
import pathlib
import signal
import subprocess
import time

import scenario
from accessibility import wait_until
from scenario import BUTTON, MENU_ITEM, Scenario

MENU_BUTTON = ("push button", "push button menu")


def window_of(process):
    """The window's id, once it is on the screen."""
    def found():
        search = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(process.pid), "--name", "^Mosa$"],
                                capture_output=True, text=True, check=False)
        return search.stdout.split()
    return wait_until(found, "the window on the screen", 40)[-1]


def frame(window):
    """x, y, width and height in pixels."""
    text = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window], capture_output=True, text=True,
                          check=True).stdout
    values = dict(line.split("=") for line in text.split())
    return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))


def settled(window, seconds=20.0):
    """The frame once it has not changed for a moment."""
    last = []

    def steady():
        last.append(frame(window))
        time.sleep(0.3)
        return last[-1] if frame(window) == last[-1] else None
    return wait_until(steady, "a window that keeps still", seconds)


def drag(start, end):
    """Presses at a point of the screen, moves and releases. Waits after what the program has to answer: a window
    manager that is asked to move a window after the button is up moves nothing."""
    def xdotool(*arguments):
        subprocess.run(["xdotool", *map(str, arguments)], check=True)
    xdotool("mousemove", *start)
    time.sleep(0.3)
    xdotool("mousedown", 1)
    time.sleep(0.3)
    near = [a + (12 if b > a else -12) for a, b in zip(start, end)]
    xdotool("mousemove", *near)
    time.sleep(1.5)
    xdotool("mousemove", *end)
    time.sleep(0.5)
    xdotool("mouseup", 1)


class Window(Scenario):
    def opened(self):
        mosa = self.mosa()
        mosa.see(BUTTON, "Close")
        return mosa, window_of(mosa.process)

    def test_ends_by_every_way_out(self):
        ways = {
            "the close control": lambda mosa, window: mosa.press(BUTTON, "Close"),
            "Ctrl+Q": lambda mosa, window: mosa.key("ctrl+q"),
            "the window manager": lambda mosa, window: subprocess.run(
                ["xdotool", "key", "alt+F4"], check=True),
            "an interrupt": lambda mosa, window: mosa.process.send_signal(signal.SIGINT),
        }
        for name, leave in ways.items():
            with self.subTest(name):
                mosa, window = self.opened()
                leave(mosa, window)
                self.assertEqual(mosa.wait(), 0)

    def test_menu_by_keyboard_and_accessibility(self):
        mosa, _ = self.opened()
        mosa.key("F10")
        for title in ("About Mosa", "Check for Updates…", "Open Folder…", "Back", "Enter Full Screen", "Mosa Help",
                      "Send Mosa Feedback…", "Quit Mosa"):
            mosa.see(MENU_ITEM, title)
        mosa.key("Escape")
        mosa.see_gone(MENU_ITEM, "Quit Mosa")

        mosa.press(MENU_BUTTON, "Menu")
        mosa.press(MENU_ITEM, "About Mosa")
        mosa.see(name="Browse the videos and photos of a folder.")
        mosa.key("Escape")
        mosa.see_gone(name="Browse the videos and photos of a folder.")

        mosa.key("F10", "Down", "Down", "Return")
        mosa.key("F10", "Up", "Return")
        self.assertEqual(mosa.wait(), 0, "the last entry quits")

    def test_place_is_kept(self):
        mosa, window = self.opened()
        x, y, width, height = settled(window)
        # By its background, well away from every control.
        drag((x + 300, y + height - 40), (x + 340, y + height - 10))
        moved = settled(window)
        self.assertNotEqual(moved[:2], (x, y), "the background moves the window")
        self.assertEqual(moved[2:], (width, height))

        # By its lower right corner.
        x, y = moved[:2]
        drag((x + width - 3, y + height - 3), (x + width - 103, y + height - 83))
        resized = settled(window)
        self.assertLess(resized[2], width)
        self.assertLess(resized[3], height)
        mosa.press(BUTTON, "Close")
        self.assertEqual(mosa.wait(), 0)

        mosa, window = self.opened()
        self.assertEqual(settled(window), resized)

    def test_zooms_and_fills_the_screen(self):
        mosa, window = self.opened()
        small = settled(window)
        x, y, _, height = small
        ways = {
            "the zoom control": lambda: mosa.press(BUTTON, "Zoom"),
            "a double click": lambda: subprocess.run(
                ["xdotool", "mousemove", str(x + 300), str(y + height - 40), "click", "--repeat", "2", "--delay",
                 "60", "1"], check=True),
            "F11": lambda: mosa.key("F11"),
            "F": lambda: mosa.key("f"),
        }
        for name, act in ways.items():
            with self.subTest(name):
                act()
                wait_until(lambda: frame(window)[2] > small[2], "a larger window")
                time.sleep(0.6)
                act()
                wait_until(lambda: frame(window) == small, "the frame of before")
                time.sleep(0.6)

    def test_second_start_hands_over(self):
        folder = self.home / "ä b"
        folder.mkdir()
        mosa, window = self.opened()
        second = self.mosa(str(folder))
        self.assertEqual(second.wait(), 0)
        # Whatever becomes of a folder without media, it is this window that is asked to show it.
        self.assertIsNone(mosa.process.poll())
        wait_until(lambda: mosa.all(BUTTON, "Choose Folder…") == [], "the folder in the first window")

    def test_starts_where_the_bus_is_stuck(self):
        with Stuck(pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / "stuck") as address:
            began = time.monotonic()
            mosa = self.mosa(DBUS_SESSION_BUS_ADDRESS=address, DBUS_SYSTEM_BUS_ADDRESS=address)
            window_of(mosa.process)
            self.assertLess(time.monotonic() - began, 20, "a connection would have timed out after 25 s")


class Stuck:
    """The socket of a bus that never answers."""

    def __init__(self, path):
        self._path = path

    def __enter__(self):
        import socket
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.bind(str(self._path))
        self._socket.listen(5)
        return f"unix:path={self._path}"

    def __exit__(self, *_):
        self._socket.close()
        self._path.unlink()


if __name__ == "__main__":
    scenario.main()
