"""Works every control of the camera page with the mouse, on a source of any kind, and checks what a
person would see: the texts of the panels, the picture, the files. Which controls there are comes
from the source; what it must offer can be stated. Each step leaves a screenshot.
"""

import argparse
import contextlib
import pathlib
import re
import sys
import time

import desktop
import widgets
from camera_session import CAPTURES, SETTLING, CameraSession
from controls import CATEGORIES
from effects import number_in, seconds
from recording import Recording
from session import NO_CAMERA, check, check_near, size_of_text, store_settings
from sources import CHOICE, BoxSource, PluggedCamera, Server, StreamSource, UsbSource
from widgets import LINKS, wait_for

NARROW = 250  # the least width of the side bar
PLAIN = 3     # the spread of brightness of a picture without anything in it
RULER_WIDTH = 17
SETTLED = 0.9  # seconds after which a camera that was plugged in is listed at the earliest


class CameraPage(CameraSession):
    """One run of the program on one source, with these steps."""

    STEPS = ("start", "open_source", "categories_fold", "offered_controls", "formats", "sizes",
             "still_lock", "exposure_target", "exposure_by_hand", "white_balance_mode",
             "white_balance_sliders", "white_balance_default", "colour_mode", "colour_sliders",
             "colour_default", "flip_and_mirror", "power_frequency", "scrolling", "pause",
             "record", "snap", "narrow_side_bar", "close_camera", "reopen",
             "unplug", "plug_in", "unplug_while_recording", "close")

    def start(self):
        self.wait_for_start()
        check(not self.shown_buttons("Pause", "Close camera"), "there is something to close")
        for name in ("Snap", "Record"):
            check(not self.program.button(name).enabled, f"{name} is enabled without a camera")
        self.check_page_enabled(False)

    def open_source(self):
        self.open(self.source)
        for name in ("Pause", "Close camera", "Snap", "Record"):
            check(self.program.button(name).enabled, f"{name} is not enabled")
        self.check_page_enabled(True)
        time.sleep(1.2)  # the placeholder shows once more, one second after opening
        self.follow_size()
        wait_for(self.picture_moves, "the picture to move")

    def categories_fold(self):
        states = [self.page[title].open for title in CATEGORIES]
        check(states == [True] + 5 * [False], f"the categories are open at first as in {states}")
        for title in reversed(CATEGORIES):
            self.page[title].set_open(not self.page[title].open)
            self.page[title].set_open(not self.page[title].open)
        for title in CATEGORIES:
            category = self.only(title)
            self.check_inside_page(category)
            name = title.lower().replace(" & ", "-").replace(" ", "-")
            self.save_screenshot(f"panel-{name}.png")
            self.first_texts[title] = self.numbers(category)

    def offered_controls(self):
        """Every group shows exactly when the source offers it."""
        if self.offered is None:
            return
        shown = set()
        for title in CATEGORIES[1:]:
            category = self.only(title)
            shown |= {slider.name for slider in category.sliders()}
            shown |= {button.name for button in category.find_all(widgets.BUTTONS)}
            shown |= {group.name for group in category.find_all("panel") if group.name}
        ever = {"Auto", "Default", "Mirror", "Flip"}  # stand whatever the source offers
        check(shown - ever == self.offered - ever,
              f"too much: {sorted(shown - ever - self.offered)}, "
              f"missing: {sorted(self.offered - shown)}")

    def formats(self):
        """Each of them, and the first one again, unless that shows nothing but one colour."""
        source = self.only("Image Source")
        combo = source.combo("Format")
        first, telling = combo.texts.index(combo.text), []
        for position, text in enumerate(combo.texts):
            source.combo("Format").choose_at(position)
            self.check_live(f"the format {text}")
            if self.look().spread > PLAIN:
                telling.append(position)
        check(telling, "the picture is of one colour in every format")
        source.combo("Format").choose_at(first if first in telling else telling[0])
        self.check_live("the chosen format")

    def sizes(self):
        """Smallest and largest, and the first one again."""
        source = self.only("Image Source")
        first = source.combo("Video").text
        texts = sorted(source.combo("Video").texts, key=self.area_of)
        for text in dict.fromkeys((texts[0], texts[-1], first)):
            source.combo("Video").choose(text)
            self.follow_size()
            self.check_live(f"the size {text}")

    def still_lock(self):
        source = self.only("Image Source")
        if not source.button("Disable still capture"):
            check(source.combo("Picture").texts == [source.combo("Video").text],
                  "pictures have another size than the video")
            return
        self.check_locked(source)
        self.click_lock(False)
        picture = source.combo("Picture")
        check(picture.enabled and len(picture.texts) > 0, "there is no choice of picture sizes")
        for text in {min(picture.texts, key=self.area_of), max(picture.texts, key=self.area_of)}:
            source.combo("Picture").choose(text)
            self.check_still(size_of_text(text))
        self.save_screenshot("stills-allowed.png")
        self.click_lock(True)
        self.check_locked(source)

    def exposure_target(self):
        exposure = self.only("Exposure & Gain")
        auto = exposure.button("Auto")
        check(auto.checked, "the exposure is not automatic at first")
        self.check_exposure_enabled(exposure, True)
        for target in exposure.sliders():
            if target.name == "Target":
                self.check_effect(target, settling=5)
                check(target.text == f"{target.value:.0f}", f"the target reads {target.text}")

    def exposure_by_hand(self):
        exposure = self.only("Exposure & Gain")
        self.set_auto(exposure, False)
        self.check_exposure_enabled(exposure, False)
        for slider in exposure.sliders():
            if slider.name == "Exposure Time":
                self.check_label_grows(slider, seconds)
                self.check_effect(slider, low=0, high=0.05)
                slider.drag_to(0)
            elif slider.name == "Gain":
                self.check_label_grows(slider, number_in)
                self.check_effect(slider)
        self.save_screenshot("exposure-by-hand.png")
        for slider in exposure.sliders():
            if slider.name == "Exposure Time":
                slider.drag_to(0.05)  # a picture that shows something, whatever Auto does
        self.set_auto(exposure, True)
        self.check_exposure_enabled(exposure, True)
        time.sleep(3)  # until the picture has its brightness again

    def white_balance_mode(self):
        balance = self.only("White Balance")
        push, auto = balance.button("One Push"), balance.button("Auto")
        check(not (push and auto), "one push and automatic balance show both")
        if push:
            self.check_one_push(balance, push)
        if auto:
            self.set_auto(balance, True)
            check(not any(slider.enabled for slider in balance.sliders()),
                  "a slider is enabled although the balance is automatic")
            self.set_auto(balance, False)

    def white_balance_sliders(self):
        balance = self.only("White Balance")
        if balance.button("Auto"):
            self.set_auto(balance, False)
        for slider in balance.sliders():
            if slider.spin_box:
                self.check_spin_box(slider)
            else:
                self.check_label_grows(slider, number_in)
            self.check_effect(slider)

    def white_balance_default(self):
        balance = self.only("White Balance")
        for slider in balance.sliders():
            slider.drag_to(0.8)
        self.click_default(balance)
        if balance.button("Auto"):
            check(balance.button("Auto").checked, "the default is not the automatic balance")
        else:
            self.check_first_texts(balance)

    def colour_mode(self):
        colours = self.only("Color Adjustment")
        mode = colours.combo("Color Mode")
        if not mode:
            return
        first, before = mode.text, self.look()
        for text in mode.texts:
            colours.combo("Color Mode").choose(text)
            time.sleep(SETTLING)
            self.check_colour_mode(text, before, self.look())
            self.save_screenshot(f"colour-mode-{text.lower()}.png")
        colours.combo("Color Mode").choose(first)

    def colour_sliders(self):
        colours = self.only("Color Adjustment")
        for slider in colours.sliders():
            before = slider.value
            self.check_spin_box(slider)
            self.check_effect(slider)
            slider.write(f"{before:.0f}")

    def colour_default(self):
        colours = self.only("Color Adjustment")
        for slider in colours.sliders():
            slider.drag_to(0.3)
        mode = colours.combo("Color Mode")
        if mode:
            mode.choose(mode.texts[-1])
        check(self.numbers(colours) != self.first_texts["Color Adjustment"], "nothing was changed")
        self.click_default(colours)
        self.check_first_texts(colours)

    def flip_and_mirror(self):
        flip = self.only("Flip")
        for name, turn in (("Flip", {"flipped": True}), ("Mirror", {"mirrored": True})):
            check(not flip.button(name).checked, f"{name} is on at first")
            before = self.looks()
            self.click_switch(flip, name)
            self.save_screenshot(f"{name.lower()}.png")
            self.check_turned(before, turn, f"{name} on")
            self.click_switch(flip, name)
            self.check_turned(before, {}, f"{name} off", opposite=turn)

    def power_frequency(self):
        other = self.only("Miscellaneous")
        choice = other.combo("Power Frequency")
        if not choice:
            return
        first = choice.text
        for text in choice.texts + [first]:
            other.combo("Power Frequency").choose(text)
        wait_for(self.picture_moves, "the picture to move")

    def scrolling(self):
        """With all open, the wheel reaches the last panel and turns no slider on its way."""
        for title in reversed(CATEGORIES):
            self.page[title].set_open(True)
        values = [self.numbers(self.page[title]) for title in CATEGORIES[2:4]]
        area = self.page_rect()
        last = self.page["Miscellaneous"].reveal(self.page["Miscellaneous"].content).rect
        check(last.y + last.height <= area.y + area.height, "the last panel is out of reach")
        check(values == [self.numbers(self.page[title]) for title in CATEGORIES[2:4]],
              "the wheel has turned a control")
        self.save_screenshot("scrolled-to-the-end.png")
        self.page["Image Source"].reveal(self.page["Image Source"].title)

    def pause(self):
        desktop.click(self.program.button("Pause").rect.center)
        time.sleep(0.5)
        check(self.program.button("Pause").checked, "the pause does not show")
        check(not self.picture_moves(), "the picture moves although it is paused")
        self.save_screenshot("paused.png")
        desktop.click(self.program.button("Pause").rect.center)
        wait_for(self.picture_moves, "the picture to move again after the pause")

    def record(self):
        size = size_of_text(self.only("Image Source").combo("Video").text)
        rate = self.frame_rate()
        path = self.new_file(CAPTURES, self.record_for_a_while)
        check(path.suffix == ".mp4", f"the recording is called {path.name}")
        video = Recording(path)
        check(video.size == size, f"the recording has the size {video.size} instead of {size}")
        check_near(video.duration, self.recorded, 1 + 0.1 * self.recorded, "the duration")
        # A busy machine may encode fewer pictures than it shows.
        check(0.3 * rate < video.rate < 1.3 * rate + 1,
              f"{video.rate:.1f} pictures a second are recorded where {rate:.1f} are shown")

    def snap(self):
        """With stills disabled, the visible part of the canvas, which holds the whole picture."""
        self.only("Image Source")
        picture = self.take_picture()
        width, height = self.canvas.video_size
        excess = RULER_WIDTH / self.canvas.fitting_zoom + 2
        for side, expected in ((picture.width, width), (picture.height, height)):
            check(expected <= side <= expected + excess,
                  f"the picture has the size {picture.rect} instead of {width}x{height}")

    def narrow_side_bar(self):
        divider = self.canvas.rect.x - round((RULER_WIDTH + 2) * widgets.pixel_ratio)
        middle = self.page_rect().center[1]
        desktop.drag((divider, middle), (divider - round(200 * widgets.pixel_ratio), middle))
        window = self.program.find("frame").rect
        wait_for(lambda: self.canvas.rect.x - window.x
                 < (NARROW + RULER_WIDTH + 10) * widgets.pixel_ratio, "a narrow side bar")
        for title in CATEGORIES:
            category = self.only(title)
            self.check_inside_page(category)
            name = title.lower().replace(" & ", "-").replace(" ", "-")
            self.save_screenshot(f"narrow-{name}.png")

    def close_camera(self):
        self.only("Image Source")
        desktop.click(self.program.button("Close camera").rect.center)
        self.program.find(LINKS, re.escape(NO_CAMERA))
        check(not self.shown_buttons("Pause", "Close camera"), "there is something to close")
        for name in ("Snap", "Record"):
            check(not self.program.button(name).enabled, f"{name} is enabled without a camera")
        self.check_page_enabled(False)
        time.sleep(1.5)  # until the placeholder shows
        check(not self.picture_moves(), "the picture moves without a camera")

    def reopen(self):
        self.open(self.source)
        time.sleep(1.2)
        self.follow_size()
        wait_for(self.picture_moves, "the picture to move")
        self.check_page_enabled(True)

    def unplug(self):
        """The picture stands still, no message comes, and the page still answers; the choice does
        without the camera."""
        if not isinstance(self.source, PluggedCamera):
            return
        self.source.unplug()
        wait_for(lambda: not self.picture_moves(), "the picture to stop")
        wait_for(lambda: self.frame_rate() == 0, "a frame rate of 0")
        self.set_auto(self.only("Exposure & Gain"), False)
        self.only("Image Source")
        self.check_no_message()
        self.save_screenshot("unplugged.png")
        desktop.click(self.program.find(LINKS, re.escape(self.source.name)).rect.center)
        self.program.dialog(CHOICE)
        check(not self.listed(), "the camera stands in the list although it is gone")

    def plug_in(self):
        """The list of the open choice follows; the camera opens again from it, as new."""
        if not isinstance(self.source, PluggedCamera):
            return
        began = time.monotonic()
        self.source.plug()
        wait_for(self.listed, "the camera in the list")
        check(time.monotonic() - began > SETTLED, "the camera is listed before it has settled")
        self.save_screenshot("plugged-in.png")
        self.source.unplug()
        wait_for(lambda: not self.listed(), "the list without the camera")
        self.source.plug()
        wait_for(self.listed, "the camera in the list again")
        self.source.choose(self.program)
        wait_for(lambda: self.frame_rate() > 1, "a frame rate above 1")
        self.check_no_message()
        time.sleep(1.2)  # the placeholder shows once more
        self.follow_size()
        wait_for(self.picture_moves, "the picture to move")
        check(self.only("Exposure & Gain").button("Auto").checked, "the exposure is by hand")
        self.only("Image Source")

    def unplug_while_recording(self):
        """The recording goes on with the last picture, and can be played to its end."""
        if not isinstance(self.source, PluggedCamera):
            return
        path = self.new_file(CAPTURES, self.record_until_unplugged)
        check_near(Recording(path).duration, self.recorded, 1 + 0.1 * self.recorded, "the duration")
        desktop.click(self.program.button("Close camera").rect.center)
        self.program.find(LINKS, re.escape(NO_CAMERA))

    def close(self):
        self.end()


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True, type=pathlib.Path)
    parser.add_argument("--output", required=True, type=pathlib.Path,
                        help="folder for screenshots, pictures and recordings")
    parser.add_argument("--scale", type=float, default=1,
                        help="screen pixels for one pixel of the program")
    parser.add_argument("--source", help="the name of a camera in the USB tab")
    parser.add_argument("--usb-library", type=pathlib.Path, metavar="LIBRARY",
                        help="what has that camera, to be loaded before the program")
    parser.add_argument("--box", metavar="ADDRESS", help="the address of a network box")
    parser.add_argument("--url", help="the address of a stream")
    parser.add_argument("--server", help="command of the source's other end")
    parser.add_argument("--offers", type=lambda text: set(text.split(",")),
                        help="the titles of exactly the controls that must show, with commas")
    parser.add_argument("--without-effect", type=lambda text: set(text.split(",")), default=set(),
                        help="the sliders that change nothing in this source's picture")
    parser.add_argument("--setting", action="append", default=[], metavar="GROUP/KEY=VALUE",
                        help="what the program finds stored")
    parser.add_argument("--steps", type=lambda text: text.split(","),
                        help="only these steps, with commas, in this order")
    return parser.parse_args()


def source_of(arguments):
    if arguments.box:
        return BoxSource(arguments.box)
    if arguments.usb_library:
        return PluggedCamera(arguments.source, arguments.usb_library.resolve())
    return StreamSource(arguments.url) if arguments.url else UsbSource(arguments.source)


def main():
    arguments = parse_arguments()
    server = Server(arguments.server) if arguments.server else contextlib.nullcontext()
    store_settings(arguments.setting)
    with server:
        return CameraPage(arguments, source_of(arguments)).run(arguments.steps)


if __name__ == "__main__":
    sys.exit(main())
