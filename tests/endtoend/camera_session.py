"""What a person does on the camera page and looks at there, by which the steps are written."""

import pathlib
import re
import time

import desktop
import widgets
from controls import CATEGORIES, categories
from desktop import Image
from effects import EFFECTS, number_in
from picture import Picture
from session import Session, check, check_near, size_of_text
from widgets import wait_for

CAPTURES = pathlib.Path.home() / "Documents" / "Orvo Files" / "Images"
SETTLING = 1.0  # seconds until a setting shows in the picture
SLANTED = 0.5   # the slant of a picture whose edges follow one diagonal


class CameraSession(Session):
    """A run of the program whose camera page is worked."""

    def __init__(self, arguments, source):
        super().__init__(arguments.program.resolve(), arguments.output.resolve(), arguments.scale,
                         (1920, 1080), source.environment)
        self.source = source
        self.offered = arguments.offers
        self.without_effect = arguments.without_effect
        self.page = categories(self.program)
        self.first_texts = {}
        self.recorded = 0.0  # seconds between the two clicks on Record

    def only(self, title):
        """That category, open while all others are folded, so that all of it is to be seen."""
        for other in reversed(CATEGORIES):
            self.page[other].set_open(other == title)
        return self.page[title]

    def page_rect(self):
        """What of the categories is to be seen at once."""
        return self.page["Image Source"].title.parent().rect

    def shown_buttons(self, *names):
        return [name for name in names
                if self.program.find_all(widgets.BUTTONS, re.escape(name))]

    def listed(self):
        """Whether the camera stands in the open choice."""
        return self.program.find_all("list item", re.escape(self.source.name))

    def check_page_enabled(self, enabled):
        for title in CATEGORIES:
            check(self.page[title].title.enabled == enabled,
                  f"{title} is {'disabled' if enabled else 'enabled'}")

    def check_inside_page(self, category):
        """No control sticks out of the page, and no text is cut off."""
        page = self.page_rect()
        for control in category.content.descendants():
            if control.showing and control.rect.area > 0 and control.role != "list item":
                check(page.x <= control.rect.x
                      and control.rect.x + control.rect.width <= page.x + page.width,
                      f"{control.role} {control.name} at {control.rect} sticks out of {page}")

    @staticmethod
    def numbers(category):
        """All that the category states at present."""
        stated = {}
        for slider in category.sliders():
            stated[slider.name] = slider.value
        for position, combo in enumerate(category.find_all("combo box")):
            stated[position] = combo.name
        return stated

    @staticmethod
    def area_of(text):
        width, height = size_of_text(text)
        return width * height

    def follow_size(self):
        """Takes the size of the live picture from the panel, and waits until the status bar shows
        the zoom that this size has when it fits."""
        self.canvas.video_size = size_of_text(self.page["Image Source"].combo("Video").text)

        def fits():
            text = self.program.button("Zoom").description
            return abs(number_in(text) / 100 - self.canvas.fitting_zoom) < 0.002
        wait_for(fits, f"a zoom of {self.canvas.fitting_zoom:.1%}", 15)

    def check_live(self, what):
        wait_for(self.picture_moves, f"the picture to move with {what}", 15)

    def look(self):
        return Picture(self.canvas.picture_rect)

    def looks(self):
        """Several moments, as the picture may move."""
        return [self.look() for _ in range(4)]

    @staticmethod
    def cast(look):
        """How far the light is from white."""
        return max(abs(look.channel(index) - 1 / 3) for index in range(3))

    def check_effect(self, slider, low=0.1, high=0.9, settling=SETTLING):
        compare, least = EFFECTS[slider.name]
        if slider.name in self.without_effect:
            return
        slider.drag_to(low)
        time.sleep(settling)
        dark = self.look()
        slider.drag_to(high)
        wait_for(lambda: compare(dark, self.look()) >= least,
                 f"{slider.name} to show in the picture", settling + 6)

    @staticmethod
    def check_label_grows(slider, parse):
        """The label beside the slider states more for more."""
        slider.drag_to(0.1)
        low, place = parse(slider.text), slider.widget.rect
        slider.drag_to(0.9)
        check(slider.widget.rect == place, f"{slider.name} moves when its label changes")
        check(parse(slider.text) > low, f"{slider.name} goes from {low:g} to {slider.text}")
        slider.drag_to(1)
        check(slider.value == slider.widget.value_range[1], f"{slider.name} does not reach its end")

    @staticmethod
    def check_spin_box(slider):
        """The slider and its spin box state the same, whichever of them is worked."""
        slider.drag_to(0.7)
        check(slider.spin_box.value == slider.value, f"{slider.name} differs from its box")
        wanted = round(sum(slider.widget.value_range) / 2)
        slider.write(wanted)
        check(slider.value == wanted, f"{slider.name} is {slider.value:g}, not {wanted}")
        slider.step(True)
        check(slider.value == wanted + 1, f"the arrow leads to {slider.value:g}")
        slider.step(False)
        check(slider.value == wanted, f"the arrow leads to {slider.value:g}")

    def check_still(self, size):
        picture = self.take_picture()
        check((picture.width, picture.height) == size,
              f"the still has the size {picture.rect} instead of {size}")
        check(picture.colours() > 1, "the still is blank")

    def take_picture(self):
        return Image.of_file(self.new_file(
            CAPTURES, lambda: desktop.click(self.program.button("Snap").rect.center)))

    def check_locked(self, source):
        picture = source.combo("Picture")
        check(source.button("Disable still capture").checked, "still capture is not disabled")
        check(not picture.enabled, "a picture size can be chosen")
        check(picture.texts == [source.combo("Video").text], f"picture sizes are {picture.texts}")

    def click_lock(self, locked):
        source = self.page["Image Source"]
        desktop.click(source.button("Disable still capture").rect.center)
        wait_for(lambda: source.button("Disable still capture").checked == locked, "the lock")

    @staticmethod
    def set_auto(category, wanted):
        if category.button("Auto").checked != wanted:
            desktop.click(category.button("Auto").rect.at(0.05, 0.5))
        wait_for(lambda: category.button("Auto").checked == wanted, "the automatic mode to change")

    @staticmethod
    def check_exposure_enabled(exposure, automatic):
        for slider in exposure.sliders():
            expected = automatic if slider.name == "Target" else not automatic
            check(slider.enabled == expected, f"{slider.name} is wrongly enabled or disabled")

    def check_one_push(self, balance, push):
        """One push takes a colour cast out of the picture."""
        slider = balance.sliders()[0]
        slider.drag_to(0.05)
        time.sleep(SETTLING)
        off = self.look()
        desktop.click(push.rect.center)
        time.sleep(SETTLING + 1)
        check(slider.name in self.without_effect or self.cast(self.look()) < self.cast(off),
              "one push does not balance the picture")

    @staticmethod
    def click_default(category):
        desktop.click(category.button("Default").rect.center)
        time.sleep(0.3)

    def check_first_texts(self, category):
        stated, first = self.numbers(category), self.first_texts[category.name]
        check(stated == first, f"the defaults are {stated} instead of {first}")

    @staticmethod
    def check_colour_mode(text, before, look):
        if text == "Monochrome":
            check(look.colourfulness < 2, "a monochrome picture has colours")
        elif text == "Negative":
            check_near(look.brightness, 255 - before.brightness, 12, "the negative's brightness")
        elif text == "Colorful":
            check_near(look.brightness, before.brightness, 12, "the brightness")
            check_near(look.colourfulness, before.colourfulness, 5, "the colourfulness")
        else:
            raise ValueError(f"{text} is no colour mode")

    @staticmethod
    def click_switch(category, name):
        before = category.button(name).checked
        desktop.click(category.button(name).rect.center)
        wait_for(lambda: category.button(name).checked != before, f"{name} to switch")
        time.sleep(SETTLING)

    def check_turned(self, before, turn, what, opposite=None):
        """The direction of the edges tells where there is one, also in a picture that moves as a
        whole; any other resembles the one before, turned so, more than turned otherwise."""
        now = self.looks()

        def best(turned):
            return max(old.likeness(new, **turned) for old in before for new in now)
        if abs(before[0].slant) > SLANTED:
            right = (before[0].slant * now[0].slant < 0) == bool(turn)
        else:
            right = best(turn) > best(opposite or {})
        check(right, f"the picture is not right with {what}")

    def record_for_a_while(self):
        record = self.program.button("Record").rect.center
        desktop.click(record)
        began = time.monotonic()
        wait_for(lambda: self.program.button("Record").checked, "the recording to show")
        check(not self.program.button("Snap").enabled, "a picture can be taken meanwhile")
        check(not self.page["Image Source"].combo("Video").enabled, "the size can be changed")
        self.program.find("label", r".*00:00:0[2-9]")
        self.save_screenshot("recording.png")
        desktop.click(record)
        self.recorded = time.monotonic() - began
        wait_for(lambda: self.program.button("Snap").enabled, "the recording to end")
        check(not self.program.find_all("label", r".*\d\d:\d\d:\d\d"), "the time still shows")

    def record_until_unplugged(self):
        record = self.program.button("Record").rect.center
        desktop.click(record)
        began = time.monotonic()
        self.program.find("label", r".*00:00:0[2-9]")
        self.source.unplug()
        wait_for(lambda: not self.picture_moves(), "the picture to stop")
        self.save_screenshot("unplugged-while-recording.png")
        desktop.click(record)
        self.recorded = time.monotonic() - began
        wait_for(lambda: self.program.button("Snap").enabled, "the recording to end")
