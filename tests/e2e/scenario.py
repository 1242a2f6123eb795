"""The base of the end-to-end scenarios: one folder and one or more runs of the program each."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

from program import Mosa

BINARY = os.environ.get("MOSA_BINARY", "build/release/src/app/mosa")
PICTURES = pathlib.Path(os.environ.get("MOSA_FAILURES", "."))

BUTTON = "push button"
MENU_ITEM = ("menu item", "check menu item")
FLAGS = "Flags and File Actions"


class Scenario(unittest.TestCase):
    """Every scenario ends with a clean end of the program and without a warning from it."""

    def setUp(self):
        self.runs = []
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="scenario-", dir=os.environ["HOME"]))
        self.addCleanup(shutil.rmtree, self.home, ignore_errors=True)
        # Each scenario is a user of its own: no last folder, no thumbnails, no window frame of another one's.
        for variable, name in {"XDG_CONFIG_HOME": "config", "XDG_CACHE_HOME": "cache", "XDG_DATA_HOME": "data"}.items():
            os.environ[variable] = str(self.home / name)
            (self.home / name).mkdir(mode=0o700)
        subprocess.run(["xdotool", "mousemove", "0", "0"], check=False)

    def mosa(self, *arguments, **environment):
        run = Mosa(BINARY, *map(os.fsencode, arguments), **environment)
        self.runs.append(run)
        return run

    # What several scenarios do

    def flag(self, mosa, *cells):
        """Flags items by the button that their cells show under the pointer."""
        for done, cell in enumerate(cells):
            mosa.point(mosa.see(name=cell))
            mosa.click(mosa.see(BUTTON, "Flag"))
            mosa.see(name=FLAGS, value=str(done + 1))

    def choose(self, mosa, entry):
        """Chooses an entry of the menu of flags and file actions."""
        mosa.press(name=FLAGS)
        mosa.press(MENU_ITEM, entry)

    def tearDown(self):
        # The outcome is known only after this method: look into it to tell a failed test from a good one.
        outcome = self._outcome.result
        failed = any(test is self for test, _ in outcome.failures + outcome.errors) or \
            any(problem for _, problem in getattr(self._outcome, "errors", []))
        if failed:
            self._report()
        problems = []
        for run in self.runs:
            try:
                status = run.end()
                if status != 0:
                    problems.append(f"the program ended with {status}")
            except AssertionError as error:
                problems.append(str(error))
            problems += run.complaints()
        if problems and not failed:
            self.fail("\n".join(problems))

    def _report(self):
        PICTURES.mkdir(parents=True, exist_ok=True)
        picture = PICTURES / f"{self.id()}.png"
        subprocess.run(["import", "-window", "root", str(picture)], check=False)
        print(f"\n--- {self.id()} failed; screenshot: {picture}", file=sys.stderr)
        for run in self.runs:
            if run.process.poll() is None:
                print(run.tree(), file=sys.stderr)
            else:
                print(f"(the program has ended with {run.process.returncode})", file=sys.stderr)
            print(run.output(), file=sys.stderr)


def main():
    unittest.main(verbosity=2, failfast=False)
