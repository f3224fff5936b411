"""Lengths, areas and angles of figures given by their points, to compare with the program's."""

import math


def path_length(points):
    return sum(math.dist(a, b) for a, b in zip(points, points[1:]))


def perimeter(points):
    return path_length(points + points[:1])


def area(points):
    return abs(sum(ax * by - bx * ay for (ax, ay), (bx, by)
                   in zip(points, points[1:] + points[:1]))) / 2


def angle(first, vertex, second):
    """Degrees from the first arm to the second, counter-clockwise on the screen, 0 to 360."""
    def direction(point):
        return math.degrees(math.atan2(vertex[1] - point[1], point[0] - vertex[0]))
    return (direction(second) - direction(first)) % 360
