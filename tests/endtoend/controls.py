"""The controls of the camera page, found by their texts and worked with the mouse."""

import re
import time
from functools import cached_property

import desktop
import widgets
from widgets import BUTTONS, wait_for

CATEGORIES = ("Image Source", "Exposure & Gain", "White Balance", "Color Adjustment", "Flip",
              "Miscellaneous")
HANDLE = 14  # width of a slider's handle, in pixels of the program
REACH = 20   # how far beyond the ends of a slider the mouse pulls the handle


class Category:
    """A titled part of the page that folds away under its title."""

    def __init__(self, program, title):
        self.program = program
        self.name = title

    @property
    def title(self):
        return self._parts[0].now()

    @property
    def content(self):
        """What stands under the title; it is not showing while the category is folded."""
        return self._parts[1].now()

    @cached_property
    def _parts(self):
        title = self.program.button(self.name)
        parts = list(title.parent().children())
        position = next(index for index, part in enumerate(parts) if part.name == self.name)
        return title, parts[position + 1]

    @property
    def open(self):
        return self.content.showing

    def set_open(self, wanted):
        if self.open != wanted:
            desktop.click(self.reveal(self.title).rect.center)
            wait_for(lambda: self.open == wanted,
                     f"{self.name} to be {'open' if wanted else 'folded'}")
            time.sleep(0.2)  # until all below it has moved

    def reveal(self, control):
        """Scrolls until all of the control is to be seen, and gives it as it is then."""
        page = self.title.parent().rect
        for _ in range(40):
            control = control.now()
            rect = control.rect
            if page.y <= rect.y and rect.y + rect.height <= page.y + page.height:
                break
            desktop.wheel(page.at(0.4, 0.6), 1 if rect.y < page.y else -1)
        return control

    def find(self, roles, name=None):
        """The first control that shows; None where there is none."""
        found = self.find_all(roles, name)
        return self.reveal(found[0]) if found else None

    def find_all(self, roles, name=None):
        return self.content.find_all(roles, name) if self.open else []

    def button(self, name):
        return self.find(BUTTONS, re.escape(name))

    def sliders(self):
        return [Slider(self, slider.name) for slider in self.find_all("slider")]

    def combo(self, label):
        """The choice in the row of a label or in the group of that title."""
        for place in self.find_all(("label", "panel"), re.escape(label)):
            row = place.parent() if place.role == "label" else place
            middle = place.rect.center[1]
            for combo in row.find_all("combo box"):
                if place.role == "panel" or abs(combo.rect.center[1] - middle) < HANDLE:
                    return Combo(self, label, combo)
        return None


class Slider:
    """A slider with the number beside it, a label or a spin box."""

    def __init__(self, category, name):
        self.category = category
        self.name = name

    @property
    def widget(self):
        return self.category.find("slider", re.escape(self.name))

    @property
    def value(self):
        return self.widget.value

    @property
    def enabled(self):
        return self.widget.enabled

    @property
    def spin_box(self):
        return self.category.find("spin button", re.escape(self.name))

    @property
    def label(self):
        """The label that states the value."""
        titles = [slider.name for slider in self.category.find_all("slider")]
        return next(label for label in self.widget.parent().find_all("label")
                    if label.name not in titles)

    @property
    def text(self):
        return self.label.name

    def drag_to(self, fraction):
        """Takes the handle and drops it at the fraction of the way, 0 the least value."""
        slider = self.widget
        lowest, highest = slider.value_range
        position = (slider.value - lowest) / (highest - lowest)
        end = self._at(slider.rect, fraction)
        if fraction in (0, 1):
            end = end[0] + (REACH if fraction else -REACH), end[1]
        desktop.drag(self._at(slider.rect, position), end)
        desktop.move((end[0], self.category.title.rect.center[1]))

    @staticmethod
    def _at(rect, fraction):
        handle = HANDLE * widgets.pixel_ratio
        return (round(rect.x + handle / 2 + fraction * (rect.width - handle)), rect.center[1])

    def write(self, value):
        """Types a value into the spin box."""
        desktop.click(self.spin_box.rect.at(0.3, 0.5))
        desktop.key("ctrl+a")
        desktop.write(str(value))
        desktop.key("Tab")

    def step(self, up):
        """Clicks an arrow of the spin box."""
        desktop.click(self.spin_box.rect.at(0.9, 0.28 if up else 0.72))


class Combo:
    """A choice of one text."""

    def __init__(self, category, label, widget):
        self.category = category
        self.label = label
        self.widget = widget

    @property
    def text(self):
        return self.widget.name

    @property
    def enabled(self):
        return self.widget.enabled

    @property
    def texts(self):
        return [item.name for item in self._items()]

    def choose(self, text):
        self.choose_at(self.texts.index(text))

    def choose_at(self, position):
        text = self.texts[position]
        desktop.click(self.category.reveal(self.widget).rect.center)
        time.sleep(0.5)  # until the list is open
        desktop.click(self._scroll_to(position).rect.center)
        wait_for(lambda: self.category.combo(self.label).text == text,
                 f"{text} chosen as {self.label}")

    def _scroll_to(self, position):
        """The item of the open list, brought into what of the list is to be seen."""
        view = next(part for part in self.widget.descendants() if part.role == "list").rect
        for _ in self._items():
            y = self._items()[position].rect.center[1]
            if view.y <= y <= view.y + view.height:
                break
            desktop.wheel(view.center, 1 if y < view.y else -1)
        return self._items()[position]

    def _items(self):
        return [part for part in self.widget.descendants() if part.role == "list item"]


def categories(program):
    return {title: Category(program, title) for title in CATEGORIES}
