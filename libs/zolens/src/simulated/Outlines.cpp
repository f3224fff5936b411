#include "Outlines.h"

#include <cmath>

namespace zolens {

double between(double low, double high, std::uint32_t key, std::uint32_t salt)
{
    return low + (high - low) * unitHashOf(key, salt);
}

QPainterPath blob(const QPointF& centre, double radius, double unevenness, std::uint32_t key)
{
    constexpr int corners = 9;
    QPolygonF points;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * M_PI * i / corners;
        const double reach = radius * (1 + unevenness * between(-1, 1, key, 40 + i));
        points << centre + reach * QPointF(std::cos(angle), std::sin(angle));
    }
    QPainterPath path((points.last() + points.first()) / 2);
    for (int i = 0; i < corners; ++i)
        path.quadTo(points[i], (points[i] + points[(i + 1) % corners]) / 2);
    return path;
}

QPainterPath rounded(const QPolygonF& corners)
{
    constexpr double straight = 0.28; ///< Of a side, from its corner, where the rounding ends.
    QPainterPath path;
    for (int i = 0; i < corners.size(); ++i) {
        const QPointF corner = corners[i];
        const QPointF before = corners[(i + corners.size() - 1) % corners.size()];
        const QPointF after = corners[(i + 1) % corners.size()];
        const QPointF from = corner + (before - corner) * straight;
        if (i == 0)
            path.moveTo(from);
        path.lineTo(from);
        path.quadTo(corner, corner + (after - corner) * straight);
    }
    path.closeSubpath();
    return path;
}

} // namespace zolens
