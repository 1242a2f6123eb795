"""Reads and drives a program through the accessibility bus, as a screen reader would."""

import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

# A program that draws in software on a busy machine answers late.
Atspi.set_timeout(5000, 30000)

Gone = GLib.GError


class Node:
    """A control. What it says is asked afresh each time; a control that has gone raises `Gone`."""

    def __init__(self, accessible):
        self._accessible = accessible

    @property
    def role(self):
        return self._accessible.get_role_name()

    @property
    def name(self):
        return self._accessible.get_name() or ""

    @property
    def value(self):
        """The text that the control announces beside its name."""
        return self._accessible.get_description() or ""

    @property
    def number(self):
        """Where a slider or progress bar stands, None for anything else."""
        return Atspi.Value.get_current_value(self._accessible) if self._offers("Value") else None

    @number.setter
    def number(self, value):
        Atspi.Value.set_current_value(self._accessible, value)

    def _offers(self, interface):
        return interface in self._accessible.get_interfaces()

    def has(self, state):
        """Whether the control is in a state, such as "showing", "enabled", "checked" or "focused"."""
        return self._accessible.get_state_set().contains(getattr(Atspi.StateType, state.upper()))

    @property
    def rectangle(self):
        """x, y, width and height on the screen, in pixels."""
        if not self._offers("Component"):
            return 0, 0, 0, 0
        extents = Atspi.Component.get_extents(self._accessible, Atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    @property
    def centre(self):
        x, y, width, height = self.rectangle
        return x + width // 2, y + height // 2

    def children(self):
        for index in range(self._accessible.get_child_count()):
            child = self._accessible.get_child_at_index(index)
            if child is not None:
                yield Node(child)

    def press(self):
        """Performs the control's own action: the one that a screen reader's user would trigger."""
        count = Atspi.Action.get_n_actions(self._accessible) if self._offers("Action") else 0
        names = [Atspi.Action.get_action_name(self._accessible, index) for index in range(count)]
        for wanted in ("Press", "Toggle", "ShowMenu"):
            if wanted in names:
                Atspi.Action.do_action(self._accessible, names.index(wanted))
                return
        raise AssertionError(f"{self} cannot be pressed; it offers {names}")

    def matches(self, role, name, value):
        return ((role is None or self.role in ((role,) if isinstance(role, str) else role))
                and _fits(self.name, name) and _fits(self.value, value))

    def find_all(self, role=None, name=None, value=None, showing=True):
        return [node for node in self._walk(showing) if node.matches(role, name, value)]

    def _walk(self, showing):
        for child in self.children():
            if not showing or child.has("showing"):
                yield child
                yield from child._walk(showing)

    def __str__(self):
        states = [state for state in ("focused", "checked", "selected") if self.has(state)]
        states += [state for state in ("enabled", "showing") if not self.has(state) for state in ["not " + state]]
        value = f" = {self.value!r}" if self.value else ""
        number = f" at {self.number:g}" if self.number is not None else ""
        return f"{self.role} {self.name!r}{value}{number} {self.rectangle} {', '.join(states)}".rstrip()


def _fits(text, wanted):
    return wanted is None or (wanted.search(text) is not None if hasattr(wanted, "search") else wanted == text)


def program(pid):
    """The root node of a running program, or None while it is not on the bus."""
    desktop = Atspi.get_desktop(0)
    desktop.clear_cache()
    for index in range(desktop.get_child_count()):
        try:
            application = desktop.get_child_at_index(index)
            if application is not None and application.get_process_id() == pid:
                application.set_cache_mask(Atspi.Cache.NONE)
                return Node(application)
        except Gone:
            pass
    return None


def tree(node, depth=0):
    """The whole tree below a node as text, for the eyes of whoever reads a failed test."""
    try:
        lines = ["  " * depth + str(node)]
        for child in node.children():
            lines.append(tree(child, depth + 1))
        return "\n".join(lines)
    except Gone as error:
        return "  " * depth + f"(gone: {error.message})"


def wait_until(condition, what, seconds=20.0):
    """Returns the first true answer of `condition`; raises AssertionError when the time has passed."""
    deadline = time.monotonic() + seconds
    while True:
        try:
            answer = condition()
            if answer:
                return answer
        except Gone:
            answer = None
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {seconds:g} s in vain for {what}")
        time.sleep(0.05)
