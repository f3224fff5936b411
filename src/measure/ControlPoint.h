#pragma once

#include <QPointF>

/// A point that shapes a tool, in item coordinates, and the directions in which it may be moved.
struct ControlPoint
{
    ControlPoint() = default;
    ControlPoint(const QPointF& position, bool alongY, bool alongX)
        : pos(position),
          movesY(alongY),
          movesX(alongX)
    {
    }

    QPointF pos;
    bool movesY = true;
    bool movesX = true;
};
