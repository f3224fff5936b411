"""The picture area of the main window, and drawing on it."""

import desktop
import widgets


class Canvas:
    """Where the picture is on the screen while it is fitted into its area.

    Picture points are pixels from the middle of the picture, so that a point can be found again
    after the area was resized.
    """

    def __init__(self, program, video_size):
        self.program = program
        self.video_size = video_size

    @property
    def rect(self):
        """The viewport: the largest plain area without widgets in it."""
        areas = [widget for widget in self.program.find_all("filler")
                 if widget.node.get_child_count() == 0]
        return max((widget.rect for widget in areas), key=lambda rect: rect.area)

    @property
    def picture_rect(self):
        """Where the picture lies in the viewport."""
        area, scale = self.rect, self.scale
        width, height = (round(scale * side) for side in self.video_size)
        x, y = area.center
        return desktop.Rect(x - width // 2, y - height // 2, width, height)

    @property
    def scale(self):
        """Screen pixels for one picture pixel."""
        rect = self.rect
        return min(rect.width / self.video_size[0], rect.height / self.video_size[1])

    @property
    def fitting_zoom(self):
        """The zoom that the program shows for the fitted picture; 1 is 100%."""
        return self.scale / widgets.pixel_ratio

    def to_picture(self, point):
        x, y = self.rect.center
        scale = self.scale
        return (point[0] - x) / scale, (point[1] - y) / scale

    def to_screen(self, point):
        x, y = self.rect.center
        scale = self.scale
        return round(x + point[0] * scale), round(y + point[1] * scale)

    @staticmethod
    def draw(points, finish=False):
        """Clicks the points of the screen; with finish, ends by a right click on the last one."""
        for point in points[:-1] if finish else points:
            desktop.click(point)
        if finish:
            desktop.move((points[-1][0] - 2, points[-1][1] - 1))
            desktop.click(points[-1], button=3)
