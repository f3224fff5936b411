"""What the live picture on the screen looks like, in numbers."""

import math

from desktop import Image, Rect

GRID = 96, 72  # fields of which only the mean colour counts
DETAIL = 240   # side of the piece, in pixels of the screen, that sharpness and noise are read from
GREY_WEIGHTS = 0.299, 0.587, 0.114


class Picture:
    """One moment of the live picture: the mean colours of a grid of fields over all of it, and a
    piece from its middle in full resolution."""

    def __init__(self, rect):
        self.grid = list(Image.of_part(rect, GRID).pixels(Rect(0, 0, *GRID), step=1))
        self.greys = [_grey(pixel) for pixel in self.grid]
        x, y = rect.center
        side = min(DETAIL, rect.width, rect.height)
        self.piece = Image.of_part(Rect(x - side // 2, y - side // 2, side, side))

    @property
    def brightness(self):
        return _mean(self.greys)

    @property
    def spread(self):
        """The standard deviation of the brightness over the picture."""
        mean = self.brightness
        return math.sqrt(_mean([(grey - mean) ** 2 for grey in self.greys]))

    @property
    def colourfulness(self):
        """How far the colours are from grey."""
        return _mean([max(pixel) - min(pixel) for pixel in self.grid])

    def channel(self, index):
        """The share of red (0), green (1) or blue (2) in all the light."""
        light = sum(sum(pixel) for pixel in self.grid)
        return sum(pixel[index] for pixel in self.grid) / max(1, light)

    @property
    def detail(self):
        """The mean step in brightness from one pixel of the screen to the next."""
        greys = [_grey(pixel) for pixel in self.piece.pixels(self.piece.rect, step=1)]
        return _mean([abs(a - b) for a, b in zip(greys, greys[1:])])

    @property
    def slant(self):
        """Which diagonal its edges follow, -1 to 1: the sign changes when the picture is flipped or
        mirrored, and stays when what is in it moves."""
        width, height = GRID
        across, along, both = 0.0, 0.0, 0.0
        for start in range(0, width * (height - 1), width):
            for here in range(start, start + width - 1):
                right = self.greys[here + 1] - self.greys[here]
                down = self.greys[here + width] - self.greys[here]
                across, along, both = across + right ** 2, along + down ** 2, both + right * down
        return 2 * both / (across + along) if across + along else 0.0

    def difference(self, other):
        """The mean difference of the fields' colours."""
        return _mean([abs(a - b) for mine, others in zip(self.grid, other.grid)
                      for a, b in zip(mine, others)])

    def likeness(self, other, flipped=False, mirrored=False):
        """How well the other picture, turned as stated, follows this one: 1 is exactly."""
        return _correlation(self.greys, _turned(other.greys, flipped, mirrored))


def _grey(pixel):
    return sum(weight * value for weight, value in zip(GREY_WEIGHTS, pixel))


def _mean(values):
    return sum(values) / len(values)


def _turned(values, flipped, mirrored):
    width, height = GRID
    rows = [values[start:start + width] for start in range(0, width * height, width)]
    if flipped:
        rows.reverse()
    if mirrored:
        rows = [row[::-1] for row in rows]
    return [value for row in rows for value in row]


def _correlation(first, second):
    first_mean, second_mean = _mean(first), _mean(second)
    together = sum((a - first_mean) * (b - second_mean) for a, b in zip(first, second))
    alone = math.sqrt(sum((a - first_mean) ** 2 for a in first)
                      * sum((b - second_mean) ** 2 for b in second))
    return together / alone if alone else 0.0
