"""A desktop of a test's own: directories, session bus, X server and window manager, all gone at the end.

Nothing of the user's session is reached: HOME and the XDG directories are temporary, the bus starts nothing but
the accessibility bus, and the display is a virtual one.
"""

import contextlib
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

BUS_CONFIG = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir={run}</listen>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/>
  </policy>
</busconfig>
"""
ACCESSIBILITY_SERVICE = pathlib.Path("/usr/share/dbus-1/services/org.a11y.Bus.service")


class Desktop:
    """Use as a context manager; `environment` is what the programs of this desktop are to be started with."""

    def __init__(self, display=None, bus=False):
        """display: the screen's "WIDTHxHEIGHT", None for none at all; bus: whether there is a session bus."""
        self._screen = display
        self._wants_bus = bus
        self._stack = contextlib.ExitStack()
        self.root = pathlib.Path()
        self.environment = {}

    def __enter__(self):
        with contextlib.ExitStack() as stack:
            self._stack = stack
            self._make_directories()
            if self._screen:
                self._start_display()
            if self._wants_bus:
                self._start_bus()
            self._stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._stack.close()

    def start(self, command, **options):
        """Starts a program that lives as long as the desktop, and returns it."""
        process = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL,
                                   start_new_session=True, **options)
        self._stack.callback(_end, process)
        return process

    def _make_directories(self):
        # Short, because the path of a socket in it may have 107 bytes at most.
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="mosa-"))
        self._stack.callback(shutil.rmtree, self.root, ignore_errors=True)
        environment = {name: value for name, value in os.environ.items()
                       if not name.startswith(("XDG_", "DBUS_", "AT_SPI", "QT_ACCESSIBILITY", "QT_LINUX_ACC"))
                       and name not in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "DESKTOP_STARTUP_ID")}
        for name, folder in {"HOME": "home", "XDG_CACHE_HOME": "home/.cache", "XDG_CONFIG_HOME": "home/.config",
                             "XDG_DATA_HOME": "home/.local/share", "XDG_STATE_HOME": "home/.local/state",
                             "XDG_RUNTIME_DIR": "run"}.items():
            path = self.root / folder
            path.mkdir(parents=True, exist_ok=True)
            path.chmod(0o700)
            environment[name] = str(path)
        environment.setdefault("LANG", "C.UTF-8")
        environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:"
        environment["NO_AT_BRIDGE"] = "1"
        self.environment = environment

    def _start_display(self):
        read_end, write_end = os.pipe()
        with os.fdopen(read_end) as answer:
            self.start(["Xvfb", "-displayfd", str(write_end), "-screen", "0", self._screen + "x24",
                        "-nolisten", "tcp", "-noreset"], pass_fds=[write_end], stderr=subprocess.DEVNULL)
            os.close(write_end)
            number = answer.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        self.environment["DISPLAY"] = ":" + number
        self.start(["openbox", "--sm-disable"], stderr=subprocess.DEVNULL)
        deadline = time.monotonic() + 20
        while subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], env=self.environment, text=True,
                             capture_output=True).stdout.find("window id") < 0:
            if time.monotonic() > deadline:
                raise RuntimeError("the window manager did not start")
            time.sleep(0.05)

    def _start_bus(self):
        services = self.root / "services"
        services.mkdir()
        if ACCESSIBILITY_SERVICE.exists():
            shutil.copy(ACCESSIBILITY_SERVICE, services)
        config = self.root / "bus.conf"
        config.write_text(BUS_CONFIG.format(run=self.root / "run", services=services))
        bus = self.start(["dbus-daemon", f"--config-file={config}", "--nofork", "--print-address=1"],
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        address = bus.stdout.readline().strip()
        if not address:
            raise RuntimeError("the session bus did not start")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        del self.environment["NO_AT_BRIDGE"]


def _end(process):
    """Ends a program and what it started: they share a process group of their own."""
    for number in (signal.SIGTERM, signal.SIGKILL):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, number)
        with contextlib.suppress(subprocess.TimeoutExpired):
            process.wait(5)
    if process.stdout:
        process.stdout.close()
