#pragma once

#include <QLineF>
#include <QPainterPath>
#include <QPen>
#include <QPointF>

#include <array>

// Plane geometry that the tools share. All points of one call are in the same coordinates; y grows
// downwards, which only decides which side of a line is the first one.

/// The length of b - a.
double pointDistance(const QPointF& a, const QPointF& b);

/// The points at the distance `d` beside both ends of the line from p1 to p2, on its normal
/// n = (-(y2 - y1), x2 - x1) / |p2 - p1|: p2 + n d, p2 - n d, p1 + n d, p1 - n d. Not finite for a
/// line of no length.
std::array<QPointF, 4> perpendicularOffsets(double d, const QPointF& p1, const QPointF& p2);
std::array<QPointF, 4> perpendicularOffsets(double d, const QLineF& line);

/// The foot of the perpendicular from `pt` on the endless line through a and b:
/// a + t (b - a) with t = ((pt - a) . (b - a)) / |b - a|^2. Not finite where a equals b.
QPointF projectOntoLine(const QPointF& pt, const QPointF& a, const QPointF& b);
QPointF projectOntoLine(const QPointF& pt, const QLineF& line);

/// Whether the cross product of p0 - p1 and p0 - p2 is within 0.00001 of zero.
bool collinear(const QPointF& p0, const QPointF& p1, const QPointF& p2);

/// The centre of the circle through three points. Of collinear points there is none: the centre is
/// (0, 0) and the radius -1.
QPointF circleThroughThreePoints(const QPointF& p1, const QPointF& p2, const QPointF& p3,
                                 double& radius);

/// The outline of `path` drawn with `pen` widened by `extra`, as a hit area: a closed path has no
/// interior. An empty path or a pen of no style gives the path itself.
QPainterPath shapeFromPath(const QPainterPath& path, const QPen& pen, double extra);
