"""Starts Mosa on the desktop of the environment and drives it by accessibility, pointer and keys."""

import os
import re
import signal
import subprocess
import time

import accessibility
from accessibility import Gone, wait_until

# What third parties print on a machine without sound, portals or a GPU; anything else fails a test.
HARMLESS = re.compile("|".join([
    r"^$",
    r"libEGL warning|MESA|libGL",
    r"qt\.qpa\.(theme|wayland)",
    r"ALSA lib|pulse|pipewire|PipeWire|\bpw\.|\[ao",
    r"Cannot load libcuda|VDPAU|libva",
    r"dbind-WARNING",
    r"^Format \w+ chosen by get_format\(\)",  # a player that ends while another one logs
]))


class Mosa:
    """One run of the program. Names and roles are those that the accessibility bus tells."""

    def __init__(self, binary, *arguments, prefix=(), **environment):
        self._log = os.path.join(os.environ["XDG_RUNTIME_DIR"], f"mosa-{time.monotonic_ns()}.log")
        variables = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", **environment)
        with open(self._log, "wb") as log:
            self.process = subprocess.Popen([*prefix, binary, *arguments], env=variables, stdin=subprocess.DEVNULL,
                                            stdout=log, stderr=log)
        self._root = None

    @property
    def root(self):
        if self._root is None:
            self._root = wait_until(self._on_the_bus, "the program on the accessibility bus", 90)
        return self._root

    def _on_the_bus(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the program ended with {self.process.returncode}:\n{self.output()}")
        return accessibility.program(self.process.pid)

    def output(self):
        """Everything that the program has printed so far."""
        with open(self._log, "rb") as log:
            return log.read().decode("utf-8", "replace")

    def complaints(self):
        return [line for line in self.output().splitlines() if not HARMLESS.search(line)]

    # Looking

    def see(self, role=None, name=None, value=None, seconds=float(os.environ.get("MOSA_PATIENCE", 20))):
        """Waits for a control that is showing, and returns it. Name and value: a text or a compiled pattern."""
        what = f"{role or 'control'} {name!r}" + (f" = {value!r}" if value is not None else "")
        return wait_until(lambda: self.all(role, name, value), what, seconds)[0]

    def all(self, role=None, name=None, value=None):
        """The controls that are showing right now."""
        return self.root.find_all(role, name, value)

    def see_gone(self, role=None, name=None, value=None, seconds=float(os.environ.get("MOSA_PATIENCE", 20))):
        wait_until(lambda: not self.all(role, name, value), f"{role} {name!r} to go", seconds)

    def tree(self):
        try:
            return accessibility.tree(self.root)
        except (AssertionError, Gone) as error:
            return f"(no tree: {error})"

    # Acting

    def press(self, role=None, name=None, value=None):
        self.see(role, name, value).press()

    def key(self, *names):
        subprocess.run(["xdotool", "key", *names], check=True)

    def type(self, text):
        subprocess.run(["xdotool", "type", "--delay", "15", text], check=True)

    def point(self, node):
        """Moves the pointer to the middle of a control, in two steps so that it enters and moves."""
        x, y = node.centre
        subprocess.run(["xdotool", "mousemove", str(x - 2), str(y - 2), "mousemove", str(x), str(y)], check=True)

    def click(self, node, count=1, button=1):
        self.point(node)
        subprocess.run(["xdotool", "click", "--repeat", str(count), "--delay", "60", str(button)], check=True)

    def button(self, act):
        """Presses the left button and leaves it down ("mousedown"), or releases it ("mouseup")."""
        subprocess.run(["xdotool", act, "1"], check=True)

    def point_away(self):
        """Puts the pointer where no control is: below everything on the screen."""
        subprocess.run(["xdotool", "mousemove", "0", "0"], check=True)

    # Ending

    def end(self, number=signal.SIGTERM, seconds=15.0):
        """Asks the program to end, and returns its exit status; kills it if it does not listen."""
        if self.process.poll() is None:
            self.process.send_signal(number)
        return self.wait(seconds)

    def wait(self, seconds=15.0):
        try:
            return self.process.wait(seconds)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            raise AssertionError(f"the program did not end within {seconds:g} s") from None
        finally:
            self._root = None
