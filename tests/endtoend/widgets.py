"""Finds the widgets of a running program by role and name through the accessibility bus.

Roles are those of AT-SPI ("push button", "check box", "label"); names are the visible texts.
Nothing is cached, so that every look shows the present state.
"""

import re
import time
from functools import cached_property

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from desktop import Rect  # noqa: E402

# Screen pixels for one of the program's own, which the bus counts in.
pixel_ratio = 1.0

LINKS = ("link", "label")
BUTTONS = ("push button", "check box", "toggle button", "radio button", "menu")


class Widget:
    """One node of the accessibility tree. What it is asked for comes over the bus, once."""

    def __init__(self, node):
        self.node = node

    @cached_property
    def role(self):
        return self.node.get_role_name()

    @cached_property
    def name(self):
        return self.node.get_name() or ""

    @cached_property
    def description(self):
        return self.node.get_description() or ""

    @cached_property
    def states(self):
        return self.node.get_state_set()

    @property
    def showing(self):
        return self.states.contains(Atspi.StateType.SHOWING)

    @property
    def enabled(self):
        return self.states.contains(Atspi.StateType.ENABLED)

    @property
    def selected(self):
        return self.states.contains(Atspi.StateType.SELECTED)

    @property
    def checked(self):
        return self.states.contains(Atspi.StateType.CHECKED)

    @cached_property
    def rect(self):
        extents = self.node.get_extents(Atspi.CoordType.SCREEN)
        return Rect(*(round(pixel_ratio * value) for value in
                      (extents.x, extents.y, extents.width, extents.height)))

    def now(self):
        """The same node as it is at present."""
        return Widget(self.node)

    def children(self):
        for index in range(self.node.get_child_count()):
            child = self.node.get_child_at_index(index)
            if child is not None:
                yield Widget(child)

    def descendants(self, only_showing=False):
        """This widget and all below it; one that vanishes during the walk is left out. What lies in
        a hidden widget is hidden as well."""
        if only_showing and not self.showing:
            return
        yield self
        try:
            for child in self.children():
                yield from child.descendants(only_showing)
        except GLib.Error:
            return

    def matches(self, roles, name):
        return self.role in roles and (name is None or re.fullmatch(name, self.name) is not None)

    def find_all(self, roles, name=None):
        """The visible ones of that role below this widget whose name matches the expression."""
        roles = (roles,) if isinstance(roles, str) else roles
        return [widget for widget in self.descendants(only_showing=True)
                if widget.matches(roles, name)]

    def parent(self):
        return Widget(self.node.get_parent())

    @property
    def active(self):
        """Whether this window has the keyboard."""
        return self.states.contains(Atspi.StateType.ACTIVE)

    @property
    def text(self):
        """What stands in an input."""
        return Atspi.Text.get_text(self.node, 0, -1)

    @property
    def value(self):
        """The value of a slider or of a spin button."""
        return Atspi.Value.get_current_value(self.node)

    @property
    def value_range(self):
        return (Atspi.Value.get_minimum_value(self.node),
                Atspi.Value.get_maximum_value(self.node))

    def describe(self, depth=0):
        """The tree below this widget as indented lines."""
        marks = "" if self.showing else " hidden"
        lines = [f"{'  ' * depth}{self.role} '{self.name}' {self.rect}{marks}"]
        try:
            for child in self.children():
                lines += child.describe(depth + 1)
        except GLib.Error:
            pass
        return lines


class Table:
    """The cells of a table view. Columns are found by the text of their header."""

    def __init__(self, widget):
        self.widget = widget
        self.cells = widget.node.get_table_iface()
        self.headers = [child.name for child in widget.children()
                        if child.role == "table column header"]

    @property
    def rows(self):
        return self.cells.get_n_rows()

    def text(self, row, header):
        return self._cell(row, self.headers.index(header)).name

    def number(self, row, header):
        """The value of a cell; None where it is empty."""
        text = self.text(row, header)
        return float(text) if text else None

    def selected_rows(self):
        return [row for row in range(self.rows) if self._cell(row, 1).selected]

    def _cell(self, row, column):
        return Widget(self.cells.get_accessible_at(row, column))


class Program:
    """The widgets of one running program, by the name that it gives itself."""

    def __init__(self, name):
        self.name = name

    def root(self):
        """The program itself; None while it is not on the bus."""
        desktop = Atspi.get_desktop(0)
        desktop.set_cache_mask(Atspi.Cache.NONE)
        for index in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(index)
            if child is not None and child.get_name() == self.name:
                child.set_cache_mask(Atspi.Cache.NONE)
                return Widget(child)
        return None

    def windows(self):
        root = self.root()
        return [window for window in root.children() if window.showing] if root else []

    def find_all(self, roles, name=None):
        return [widget for window in self.windows() for widget in window.find_all(roles, name)]

    def find(self, roles, name=None, timeout=10):
        """The first visible widget of one of the roles whose name matches the expression."""
        what = f"{roles} {name or ''}".strip()
        return wait_for(lambda: next(iter(self.find_all(roles, name)), None), what, timeout)

    def button(self, name, timeout=10):
        return self.find(BUTTONS, re.escape(name), timeout)

    def dialog(self, title):
        return self._placed("dialog", re.escape(title))

    def message(self):
        """The message box that shows."""
        return self._placed("alert")

    def _placed(self, role, title=None):
        """A window once it has the keyboard: it moves before, while it is being placed."""
        return wait_for(lambda: next((window for window in self.find_all(role, title)
                                      if window.active), None), f"{role} {title or ''}".strip())

    def describe(self):
        root = self.root()
        return "\n".join(root.describe()) if root else "no such program"


def connect():
    """Brings the accessibility bus up. A program that starts before it is there may miss it."""
    Atspi.init()
    wait_for(lambda: Atspi.get_desktop(0).get_role_name(), "the accessibility bus", 20)


def wait_for(condition, what, timeout=10):
    """The condition's value as soon as it is true; an error that names it after the timeout."""
    deadline = time.monotonic() + timeout
    while True:
        try:
            value = condition()
        except GLib.Error:
            value = None
        if value:
            return value
        if time.monotonic() > deadline:
            raise TimeoutError(f"waited {timeout} s for {what}")
        time.sleep(0.1)
