"""The screen, the mouse and the keyboard of the X display, as a person has them.

Positions are pixels of the screen, (x, y) from its top left.
"""

import subprocess
import time


class Rect:
    """A rectangle on the screen."""

    def __init__(self, x, y, width, height):
        self.x, self.y, self.width, self.height = x, y, width, height

    @property
    def center(self):
        return self.x + self.width // 2, self.y + self.height // 2

    @property
    def area(self):
        return self.width * self.height

    def at(self, across, down):
        """The point at fractions of the width and the height."""
        return round(self.x + across * self.width), round(self.y + down * self.height)

    @staticmethod
    def around(points, margin):
        """The smallest rectangle that holds the points and a margin around them."""
        left, right = min(x for x, _ in points), max(x for x, _ in points)
        top, bottom = min(y for _, y in points), max(y for _, y in points)
        return Rect(left - margin, top - margin, right - left + 2 * margin,
                    bottom - top + 2 * margin)

    def __eq__(self, other):
        return repr(self) == repr(other)

    def __repr__(self):
        return f"{self.width}x{self.height}+{self.x}+{self.y}"


class Image:
    """A picture of the screen at one moment, or one from a file."""

    BYTES = 3  # red, green, blue

    def __init__(self, size, data):
        self.width, self.height = size
        self.data = data
        if len(data) != self.width * self.height * self.BYTES:
            raise RuntimeError("the picture does not have the size that it should")

    @classmethod
    def of_screen(cls):
        width, height = _output("xdotool", "getdisplaygeometry").split()
        data = _output("import", "-window", "root", "-depth", "8", "rgb:-", text=False)
        return cls((int(width), int(height)), data)

    @classmethod
    def of_part(cls, rect, size=None):
        """The pixels of a rectangle of the screen, averaged down to a size where one is given."""
        size = size or (rect.width, rect.height)
        data = _output("import", "-window", "root", "-crop", f"{rect}!", "+repage", "-resize",
                       f"{size[0]}x{size[1]}!", "-depth", "8", "rgb:-", text=False)
        return cls(size, data)

    @classmethod
    def of_file(cls, path):
        width, height = _output("identify", "-format", "%w %h", path).split()
        data = _output("convert", path, "-depth", "8", "rgb:-", text=False)
        return cls((int(width), int(height)), data)

    @property
    def rect(self):
        return Rect(0, 0, self.width, self.height)

    def save(self, path):
        subprocess.run(
            ["convert", "-size", f"{self.width}x{self.height}", "-depth", "8", "rgb:-", str(path)],
            input=self.data, check=True)

    def pixels(self, rect, step=4):
        """Every step-th pixel of every step-th row as (red, green, blue)."""
        for y in range(max(0, rect.y), min(self.height, rect.y + rect.height), step):
            for x in range(max(0, rect.x), min(self.width, rect.x + rect.width), step):
                start = (y * self.width + x) * self.BYTES
                yield tuple(self.data[start:start + self.BYTES])

    def part(self, rect):
        """The pixels of a rectangle, to be compared with those of another one."""
        return list(self.pixels(rect, step=1))

    def mean(self, rect):
        pixels = list(self.pixels(rect))
        return tuple(sum(channel) / len(pixels) for channel in zip(*pixels))

    def colours(self, rect=None):
        """How many different colours there are."""
        return len(set(self.pixels(rect or self.rect)))

    def coloured(self, rect):
        """The share of pixels, 0 to 1, that are far from grey."""
        pixels = list(self.pixels(rect))
        return sum(1 for pixel in pixels if max(pixel) - min(pixel) > 60) / len(pixels)

    def count(self, colour, rect, tolerance=25):
        """How many pixels have nearly that colour."""
        return sum(1 for pixel in self.pixels(rect, step=1)
                   if all(abs(a - b) <= tolerance for a, b in zip(pixel, colour)))

    def changed(self, other, rect):
        """The share of pixels, 0 to 1, that differ from those of another picture."""
        pairs = list(zip(self.pixels(rect), other.pixels(rect)))
        return sum(1 for mine, others in pairs if mine != others) / len(pairs)


def move(point):
    _xdotool("mousemove", *point)
    time.sleep(0.03)


def click(point, button=1, times=1):
    """Moves there in two steps, as a hand does, and clicks."""
    x, y = point
    move((x - 2, y - 1))
    move((x, y))
    _xdotool("click", "--repeat", times, "--delay", 60, button)
    time.sleep(0.1)


def drag(start, end):
    move(start)
    _xdotool("mousedown", 1)
    move(((start[0] + end[0]) // 2, (start[1] + end[1]) // 2))
    move(end)
    _xdotool("mouseup", 1)
    time.sleep(0.1)


def wheel(point, notches):
    """Turns the wheel: away from the user for positive notches."""
    move(point)
    _xdotool("click", "--repeat", abs(notches), "--delay", 40, 4 if notches > 0 else 5)
    time.sleep(0.2)


def key(name):
    """Presses a key or a combination such as ctrl+plus."""
    _xdotool("key", name)
    time.sleep(0.2)


def write(text):
    _xdotool("type", "--delay", 15, text)
    time.sleep(0.1)


def _xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True)


def _output(*command, text=True):
    return subprocess.run(list(map(str, command)), check=True, stdout=subprocess.PIPE,
                          text=text).stdout
