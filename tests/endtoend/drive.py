"""Drives the built program on the present X display with real mouse and keyboard events, from the
start to the saved picture, and checks what a person would see. Each step leaves a screenshot.

Without --server the picture comes from the simulated camera, else from the stream of an RTSP
server, which is started, prints "PORT n" and "READY" and shows a picture without colours.
"""

import argparse
import contextlib
import datetime
import math
import pathlib
import re
import sys
import time

import desktop
import figures
from desktop import Image, Rect
from session import Session, check, check_near, size_of_text
from sources import Server, StreamSource, UsbSource
from widgets import Table, wait_for

PICTURE_NAME = re.compile(r"\d{8}-\d{6}-\d{3}\.jpg")
PICTURES = pathlib.Path.home() / "Documents" / "Orvo Files" / "Images"
FIGURE_COLOUR = (0, 150, 211)
ARROW_COLOUR = (91, 155, 213)
RULER_WIDTH = 17
FIGURE_PIXELS = 40  # at least so many of a figure's pixels are not blended with the picture
ACTUAL_SIZE_LEVEL = 250
HIGHEST_LEVEL = 500
LEVELS_PER_DOUBLING = 50


class Drive(Session):
    """One run of the program. The methods whose names are in STEPS are the steps, in order."""

    STEPS = ("start", "open_source", "live_picture", "measure_page", "line",
             "polyline", "polygon", "angle", "arrow", "measurement_table", "select",
             "zoom_by_wheel", "zoom_by_slider", "zoom_by_keys", "fit_in_view", "full_screen",
             "pause", "take_pictures", "close")

    def __init__(self, arguments, source):
        super().__init__(arguments.program.resolve(), arguments.output.resolve(), arguments.scale,
                         arguments.video)
        self.source = source
        self.picture_size = arguments.picture
        self.has_stills = not isinstance(source, StreamSource)
        self.drawn = {}
        self.fitted = None

    # Steps

    def start(self):
        self.wait_for_start()
        window = self.program.find("frame")
        shot = Image.of_screen()
        check(shot.colours(self.canvas.rect) > 3, "the placeholder is blank")
        # The side bar's empty foot: dark, and more blue than red.
        side = Rect(window.rect.x, window.rect.y, self.canvas.rect.x - window.rect.x,
                    window.rect.height)
        red, green, blue = shot.mean(side)
        check(red < 80 and green < 90 and blue < 110 and blue > red + 8,
              f"the side bar is not dark blue but ({red:.0f}, {green:.0f}, {blue:.0f})")

    def open_source(self):
        self.open(self.source)

    def live_picture(self):
        time.sleep(1.2)  # the placeholder shows once more, one second after opening
        wait_for(self.picture_moves, "the picture to move")
        if not self.has_stills:  # the server shows a white ball on black: colours are decoding errors
            check(Image.of_screen().coloured(self.canvas.rect) < 0.01, "the picture is damaged")

    def measure_page(self):
        desktop.click(self.program.button("Measure").rect.center)
        self.program.button("Line")

    def line(self):
        self.draw("Line", [(0.30, 0.25), (0.60, 0.30)])

    def polyline(self):
        self.draw("Polyline", [(0.25, 0.40), (0.35, 0.50), (0.45, 0.40), (0.50, 0.52)], True)

    def polygon(self):
        self.draw("Polygon", [(0.58, 0.42), (0.72, 0.45), (0.70, 0.62), (0.56, 0.58)], True)

    def angle(self):
        self.draw("Angle", [(0.45, 0.62), (0.30, 0.75), (0.50, 0.78)])

    def arrow(self):
        self.draw("Arrow", [(0.60, 0.78), (0.72, 0.70)], colour=ARROW_COLOUR)

    def measurement_table(self):
        desktop.click(self.program.button("List").rect.center)
        table = self.table()
        wait_for(lambda: table.rows == 4, "four measured figures in the table")
        time.sleep(0.5)
        points = self.drawn
        self.check_length(table, 0, "Length", figures.path_length(points["Line"]))
        self.check_length(table, 1, "Length", figures.path_length(points["Polyline"]))
        self.check_length(table, 2, "Perimeter", figures.perimeter(points["Polygon"]))
        area = figures.area(points["Polygon"])
        check_near(table.number(2, "Area"), area, 0.02 * area, "the polygon's area")
        check_near(table.number(3, "Angle(°)"), figures.angle(*points["Angle"]), 1.0, "the angle")

    def select(self):
        desktop.click(self.program.button("Select").rect.center)
        time.sleep(0.3)
        for row, name in enumerate(("Line", "Polyline")):
            (ax, ay), (bx, by) = self.drawn[name][:2]
            point = self.canvas.to_screen((0.7 * ax + 0.3 * bx, 0.7 * ay + 0.3 * by))
            desktop.click(point)
            wait_for(lambda: self.table().selected_rows() == [row], f"the row of the {name}")

    def zoom_by_wheel(self):
        self.fitted = self.percentage()
        center = self.canvas.rect.center
        self.check_zoom_and_back(lambda: desktop.wheel(center, 1),
                                 lambda: desktop.wheel(center, -1))

    def zoom_by_slider(self):
        before = self.percentage()
        slider = self.program.find("slider", "Zoom level").rect
        level = ACTUAL_SIZE_LEVEL + LEVELS_PER_DOUBLING * math.log2(self.canvas.fitting_zoom)
        desktop.drag(slider.at(level / HIGHEST_LEVEL, 0.5), slider.at(0.6, 0.5))
        wait_for(lambda: self.percentage() != before, "another percentage by the slider")

    def zoom_by_keys(self):
        self.check_zoom_and_back(lambda: desktop.key("ctrl+minus"),
                                 lambda: desktop.key("ctrl+plus"))

    def fit_in_view(self):
        desktop.click(self.program.button("Zoom").rect.center)
        # Popup menus are not on the accessibility bus: the last entry, by the keyboard.
        desktop.key("Up")
        desktop.key("Return")
        wait_for(lambda: self.percentage() == self.fitted, "the percentage of the fitted picture")

    def full_screen(self):
        screen = Image.of_screen()
        desktop.key("F11")
        wait_for(lambda: (self.canvas.rect.width, self.canvas.rect.height)
                 == (screen.width, screen.height), "the picture on the whole screen")
        self.save_screenshot("full-screen.png")
        desktop.key("Escape")
        wait_for(lambda: self.canvas.rect.width < screen.width, "the window back on the screen")
        time.sleep(0.5)

    def pause(self):
        desktop.click(self.program.button("Camera").rect.center)
        pause = self.program.button("Pause").rect.center
        desktop.click(pause)
        time.sleep(0.5)
        check(not self.picture_moves(), "the picture moves although it is paused")
        self.save_screenshot("paused.png")
        desktop.click(pause)
        wait_for(self.picture_moves, "the picture to move again after the pause")

    def take_pictures(self):
        if self.has_stills:
            self.allow_stills()
        self.take_picture(lambda: desktop.key("Return"))
        self.take_picture(lambda: desktop.click(self.program.button("Snap").rect.center))

    def close(self):
        self.end()

    # What the steps are made of

    def draw(self, tool, fractions, finish=False, colour=FIGURE_COLOUR):
        button = self.program.button(tool).rect
        desktop.click(button.at(0.3, 0.5))
        area = self.canvas.rect
        points = [area.at(*fraction) for fraction in fractions]
        surroundings = Rect.around(points, 20)
        before = Image.of_screen().count(colour, surroundings)
        self.canvas.draw(points, finish)
        self.drawn[tool] = [self.canvas.to_picture(point) for point in points]
        wait_for(lambda: Image.of_screen().count(colour, surroundings) > before + FIGURE_PIXELS,
                 f"the {tool} to be seen")

    def table(self):
        return Table(self.program.find("table"))

    def check_length(self, table, row, header, expected):
        # A click is exact to one screen pixel, which is 1 / scale picture pixels at either end.
        tolerance = 0.005 * expected + 2 / self.canvas.scale
        check_near(table.number(row, header), expected, tolerance, f"{header} of row {row + 1}")

    def percentage(self):
        """The zoom as the status bar shows it: the picture of it, with the mouse elsewhere."""
        desktop.move(self.canvas.rect.center)
        return Image.of_screen().part(self.program.button("Zoom").rect)

    def check_zoom_and_back(self, forth, back):
        """Two opposite steps: the percentage changes and is then as before."""
        before = self.percentage()
        forth()
        wait_for(lambda: self.percentage() != before, "another percentage")
        back()
        wait_for(lambda: self.percentage() == before, "the percentage of before")

    def allow_stills(self):
        """With nothing stored, a camera opens with its still capture disabled."""
        lock = self.program.button("Disable still capture")
        check(lock.checked, "still capture is not disabled at first")
        desktop.click(lock.rect.center)
        wait_for(lambda: not self.program.button("Disable still capture").checked,
                 "still capture to be allowed")

    def take_picture(self, action):
        began = datetime.datetime.now().replace(microsecond=0)
        picture = self.new_file(PICTURES, action)
        check(PICTURE_NAME.fullmatch(picture.name), f"the picture is called {picture.name}")
        taken = datetime.datetime.strptime(picture.stem[:15], "%Y%m%d-%H%M%S")
        check(began <= taken <= datetime.datetime.now(), f"{picture.name} is not the present time")
        self.check_picture(Image.of_file(picture))

    def check_picture(self, picture):
        """A still has the camera's size. Where the camera takes none, the visible part of the
        canvas is saved with the figures; it may reach over the picture by the rulers' width."""
        excess = 0 if self.has_stills else math.ceil(RULER_WIDTH / self.canvas.fitting_zoom) + 1
        for side, expected in zip((picture.width, picture.height), self.picture_size):
            check(expected <= side <= expected + excess,
                  f"the picture has the size {picture.rect} instead of {self.picture_size}")
        check(picture.colours() > 1, "the picture is blank")
        if not self.has_stills:
            check(picture.count(FIGURE_COLOUR, picture.rect) > FIGURE_PIXELS,
                  "the saved picture lacks the figures")


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True, type=pathlib.Path)
    parser.add_argument("--output", required=True, type=pathlib.Path,
                        help="folder for screenshots and pictures")
    parser.add_argument("--video", default="1920x1080", type=size_of_text,
                        help="the size of the live picture")
    parser.add_argument("--picture", default="3840x2160", type=size_of_text,
                        help="the size that saved pictures must have")
    parser.add_argument("--scale", type=float, default=1,
                        help="screen pixels for one pixel of the program")
    parser.add_argument("--server", help="command of an RTSP server to start")
    parser.add_argument("--path", default="/h264", help="the path of its stream")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    with contextlib.ExitStack() as stack:
        source = UsbSource()
        if arguments.server:
            server = stack.enter_context(Server(arguments.server))
            source = StreamSource(f"rtsp://127.0.0.1:{server.port}{arguments.path}")
        return Drive(arguments, source).run()


if __name__ == "__main__":
    sys.exit(main())
