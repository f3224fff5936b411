#include "measure/Geometry.h"

#include <QPainterPathStroker>

#include <cmath>

namespace {

constexpr double degenerateBelow = 0.00001;
constexpr double hairlineWidth = 0.00000001;

/// (ya - yb)(xa - xc) - (ya - yc)(xa - xb): twice the signed area of the triangle.
double doubledArea(const QPointF& a, const QPointF& b, const QPointF& c)
{
    return (a.y() - b.y()) * (a.x() - c.x()) - (a.y() - c.y()) * (a.x() - b.x());
}

/// Half of |a|^2 - |b|^2.
double halfSquareDifference(const QPointF& a, const QPointF& b)
{
    return (a.y() * a.y() - b.y() * b.y() + a.x() * a.x() - b.x() * b.x()) / 2.0;
}

} // namespace

double pointDistance(const QPointF& a, const QPointF& b)
{
    const QPointF d = a - b;
    return std::sqrt(d.y() * d.y() + d.x() * d.x());
}

std::array<QPointF, 4> perpendicularOffsets(double d, const QPointF& p1, const QPointF& p2)
{
    const double length = pointDistance(p1, p2);
    const QPointF normal(-(p2.y() - p1.y()) / length, (p2.x() - p1.x()) / length);
    const QPointF offset = normal * d;
    return {p2 + offset, p2 - offset, p1 + offset, p1 - offset};
}

std::array<QPointF, 4> perpendicularOffsets(double d, const QLineF& line)
{
    return perpendicularOffsets(d, line.p1(), line.p2());
}

QPointF projectOntoLine(const QPointF& pt, const QPointF& a, const QPointF& b)
{
    const QPointF direction = b - a;
    const double t =
        QPointF::dotProduct(pt - a, direction) / QPointF::dotProduct(direction, direction);
    return a + t * direction;
}

QPointF projectOntoLine(const QPointF& pt, const QLineF& line)
{
    return projectOntoLine(pt, line.p1(), line.p2());
}

bool collinear(const QPointF& p0, const QPointF& p1, const QPointF& p2)
{
    return std::abs(doubledArea(p0, p1, p2)) < degenerateBelow;
}

QPointF circleThroughThreePoints(const QPointF& p1, const QPointF& p2, const QPointF& p3,
                                 double& radius)
{
    // The centre lies on the bisectors of p1 p3 and p1 p2:
    //   (x1 - x3) x + (y1 - y3) y = A,  (x1 - x2) x + (y1 - y2) y = B
    // and D is the determinant of these two equations.
    const QPointF to3 = p1 - p3;
    const QPointF to2 = p1 - p2;
    const double determinant = to3.x() * to2.y() - to3.y() * to2.x();
    if (std::abs(determinant) < degenerateBelow) {
        radius = -1.0;
        return {};
    }
    const double a = halfSquareDifference(p1, p3);
    const double b = halfSquareDifference(p1, p2);
    const QPointF centre((a * to2.y() - b * to3.y()) / determinant,
                         (b * to3.x() - a * to2.x()) / determinant);
    radius = pointDistance(p1, centre);
    return centre;
}

QPainterPath shapeFromPath(const QPainterPath& path, const QPen& pen, double extra)
{
    if (path == QPainterPath() || pen == QPen(Qt::NoPen))
        return path;
    QPainterPathStroker stroker;
    stroker.setCapStyle(pen.capStyle());
    stroker.setJoinStyle(pen.joinStyle());
    stroker.setMiterLimit(pen.miterLimit());
    stroker.setWidth(pen.widthF() <= 0.0 ? hairlineWidth : pen.widthF() + extra);
    return stroker.createStroke(path);
}
