#pragma once

#include "measure/ControlPoint.h"

#include <QObject>

/// What the mouse has hit on a tool, and where. A member of the tool.
class PrimitiveHitTest final : public QObject
{
    Q_OBJECT

public:
    enum Type { NoHit = 0, CtrlPoint = 1, Outline = 2, Dimension = 3 };
    Q_ENUM(Type)

    /// Back to no hit. The grab offset is kept: it means nothing without a hit.
    void reset();

    Type type = NoHit;
    int index = -1; ///< Of the control point.
    int outlineIndex = -1;
    int dimensionIndex = -1;
    QPointF pressPos;   ///< Item coordinates.
    QPointF grabOffset; ///< From the control point to pressPos.
    ControlPoint point;
    int button = 0; ///< A Qt::MouseButton; 0 for a hovering mouse.
};
