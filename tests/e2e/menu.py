"""The menu and its shortcuts, what they open, and the window's messages."""

import contextlib
import os
import pathlib
import subprocess
import sys

import samples
import scenario
from accessibility import wait_until
from scenario import BUTTON, MENU_ITEM, Scenario

TITLES = ["About Mosa", "Check for Updates…", "Open Folder…", "Back", "Enter Full Screen", "Mosa Help",
          "Send Mosa Feedback…", "Quit Mosa"]
CHOOSER = "Open a folder in Mosa"
PACKAGEKIT = pathlib.Path(__file__).parent.parent / "support" / "packagekit.py"


class Menu(Scenario):
    def entries(self, mosa):
        mosa.see(MENU_ITEM, "Quit Mosa")
        return mosa.all(MENU_ITEM)

    def entry(self, mosa, title):
        """Opens the menu and chooses an entry, both as assistive technology does."""
        mosa.press(BUTTON, "Menu")
        mosa.press(MENU_ITEM, title)

    def opener(self):
        """A desktop's opener that writes down what it is asked to open, and where it does."""
        program = self.home / "bin" / "xdg-open"
        program.parent.mkdir()
        program.write_text(f'#!/bin/sh\necho "$1" >>"{self.home}/opened"\n')
        program.chmod(0o755)
        return {"PATH": f"{program.parent}:{os.environ['PATH']}"}, self.home / "opened"

    def test_by_keyboard(self):
        mosa = self.mosa()
        mosa.see(BUTTON, "Close")
        mosa.key("F10")
        entries = self.entries(mosa)
        self.assertEqual([entry.name for entry in entries], TITLES)
        mosa.see("popup menu", "Menu")
        self.assertEqual([entry.name for entry in entries if not entry.has("enabled")], ["Check for Updates…", "Back"])
        focused = lambda title: wait_until(  # noqa: E731
            lambda: mosa.see(MENU_ITEM, title).has("focused"), f"the focus at {title!r}")
        focused("About Mosa")
        mosa.key("Down")
        focused("Open Folder…")
        mosa.key("Up", "Up")
        focused("Quit Mosa")
        mosa.key("F10")
        mosa.see_gone(MENU_ITEM, "Quit Mosa")
        # Its control closes it, too.
        mosa.click(mosa.see(BUTTON, "Menu"))
        mosa.see(MENU_ITEM, "Quit Mosa")
        mosa.click(mosa.see(BUTTON, "Menu"))
        mosa.see_gone(MENU_ITEM, "Quit Mosa")
        mosa.key("F10", "Return")
        mosa.see("dialog", "About Mosa")
        mosa.key("Escape")
        mosa.see_gone("dialog", "About Mosa")
        mosa.key("F10", "Up", "Return")
        self.assertEqual(mosa.wait(), 0)

    def test_by_accessibility_and_each_press_acts_once(self):
        path, opened = self.opener()
        folder = samples.folder(self.home / "trip", photos=1)
        samples.folder(folder / "Day 1", videos=1, photos=2)
        mosa = self.mosa(folder, **path)
        mosa.press(BUTTON, "Day 1")
        mosa.see(name="Photos 2")
        self.entry(mosa, "Back")
        mosa.see(name="Photos 1")
        self.entry(mosa, "Enter Full Screen")
        mosa.see_gone(BUTTON, "Zoom")
        mosa.key("F10")
        mosa.press(MENU_ITEM, "Exit Full Screen")
        mosa.see(BUTTON, "Zoom")
        self.entry(mosa, "Mosa Help")
        self.entry(mosa, "Send Mosa Feedback…")
        page, mail = wait_until(lambda: opened.exists() and (lines := opened.read_text().split())[1:] and lines,
                                "help and mail")
        self.assertTrue(pathlib.Path(page.removeprefix("file://")).is_file(), page)
        self.assertRegex(mail, r"^mailto:[^?]+@[^?]+\?subject=Mosa%20Feedback$")

    def test_a_question_leaves_nothing_but_to_quit(self):
        mosa = self.mosa(samples.folder(self.home / "a", photos=1))
        mosa.click(mosa.see(name="Open photo: photo 1.jpg"), count=2)
        mosa.see_gone(name="Photos 1")
        self.entry(mosa, "About Mosa")
        mosa.key("ctrl+o")
        mosa.see("dialog", CHOOSER)
        mosa.see_gone("dialog", "About Mosa")
        mosa.press(BUTTON, "Menu")
        self.assertEqual([entry.name for entry in self.entries(mosa) if entry.has("enabled")], ["Quit Mosa"])
        mosa.key("Escape")
        mosa.see_gone(MENU_ITEM, "Quit Mosa")
        mosa.key("Escape")
        mosa.see_gone("dialog", CHOOSER)
        # The viewer was there all the time.
        mosa.key("Escape")
        mosa.see(name="Photos 1")

    def test_keys_on_a_keyboard_without_latin_letters(self):
        def press(code, control=False):
            hold = (["keydown", "37"], ["keyup", "37"]) if control else ([], [])
            subprocess.run(["xdotool", *hold[0], "key", str(code), *hold[1]], check=True)
        folder = samples.folder(self.home / "trip", photos=1)
        samples.folder(folder / "Day 1", videos=1, photos=2)
        mosa = self.mosa(folder)
        mosa.press(BUTTON, "Day 1")
        mosa.see(name="Photos 2")
        self.addCleanup(subprocess.run, ["setxkbmap", "us"], check=False)
        # Hebrew, which also has a slash at Q and the brackets the other way round.
        subprocess.run(["setxkbmap", "il"], check=True)
        press(41)  # F
        mosa.see_gone(BUTTON, "Zoom")
        press(41)
        mosa.see(BUTTON, "Zoom")
        press(34, control=True)  # [
        mosa.see(name="Photos 1")
        press(32, control=True)  # O
        mosa.see("dialog", CHOOSER)
        press(41)  # types a letter here
        mosa.key("Escape")
        mosa.see_gone("dialog", CHOOSER)
        mosa.see(BUTTON, "Zoom")
        mosa.key("F10")
        mosa.see(MENU_ITEM, "Quit Mosa")
        press(24, control=True)  # Q
        self.assertEqual(mosa.wait(), 0)

    def test_an_error_lies_over_the_viewer(self):
        mosa = self.mosa(samples.folder(self.home / "a", photos=1))
        mosa.click(mosa.see(name="Open photo: photo 1.jpg"), count=2)
        mosa.see_gone(name="Photos 1")
        self.assertEqual(self.mosa(self.home / "gone" / "away").wait(), 0)
        dismiss = mosa.see(BUTTON, "Dismiss")
        mosa.see(name="“gone” is no longer there.")
        mosa.click(dismiss)
        mosa.see_gone(BUTTON, "Dismiss")
        self.assertEqual(mosa.all(name="Photos 1"), [], "the viewer stays")

    @contextlib.contextmanager
    def checking(self, outcome):
        """The program with a package service, while a check is under way; and what lets the work go on."""
        service = subprocess.Popen([sys.executable, "-B", PACKAGEKIT, outcome], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, text=True, bufsize=1)
        with contextlib.closing(service.stdin), contextlib.closing(service.stdout):
            try:
                self.assertEqual(service.stdout.readline(), "ready\n")
                mosa = self.mosa(DBUS_SYSTEM_BUS_ADDRESS=os.environ["DBUS_SESSION_BUS_ADDRESS"])
                mosa.see(BUTTON, "Close")
                self.entry(mosa, "Check for Updates…")
                mosa.see("dialog", "Checking for Updates…")
                yield mosa, service
                mosa.press(BUTTON, "Menu")
                self.assertTrue(mosa.see(MENU_ITEM, "Check for Updates…").has("enabled"), "another check may start")
                mosa.end()
            finally:
                service.kill()
                service.wait()

    def test_updates(self):
        def go_on(service, pieces=1):
            service.stdin.write("\n" * pieces)
        with self.subTest("none"), self.checking("none") as (mosa, service):
            go_on(service, 2)
            mosa.see("dialog", "Mosa Is Up to Date")
            mosa.key("Return")
            mosa.see_gone("dialog")
        for method in ("RefreshCache", "GetUpdates"):
            with self.subTest("failing", method=method), self.checking(method) as (mosa, service):
                go_on(service, 2)
                mosa.see("dialog", "Updates Could Not Be Checked")
                mosa.see(name="The package service has no network.")
                mosa.key("Escape")
                mosa.see_gone("dialog")
        with self.subTest("dying"), self.checking("update") as (mosa, service):
            service.kill()
            mosa.see("dialog", "Updates Could Not Be Checked")
            mosa.key("Escape")
            mosa.see_gone("dialog")
        for outcome, end in (("update", "The Update Is Installed"),
                             ("UpdatePackages", "The Update Could Not Be Installed")):
            with self.subTest("installing", end=end), self.checking(outcome) as (mosa, service):
                mosa.press(BUTTON, "Hide")
                mosa.see_gone("dialog")
                go_on(service, 2)
                mosa.see("dialog", "An Update Is Available")
                mosa.press(BUTTON, "Install Update")
                mosa.see("progress bar", "Installing the Update…", value="40%")
                go_on(service)
                mosa.see("dialog", end)
                mosa.key("Escape")
                mosa.see_gone("dialog")


if __name__ == "__main__":
    scenario.main()
