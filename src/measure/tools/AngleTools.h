#pragma once

#include "measure/tools/LineTools.h"

/// The angle at the second of three points, from the first arm counter-clockwise to the second one,
/// in degrees from 0 to below 360.
class PrimitiveToolAngle final : public PrimitiveToolLine
{
    Q_OBJECT

public:
    PrimitiveToolAngle(PrimitiveManager* manager, GraphicsScene* scene, const QPointF& pos);

    int type() const override { return ToolType::Angle; }
    int minPointCount() const override { return 3; }
    void updateDimensions() override;
    QPointF labelAnchor() const override;
    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;
};

/// The angle between two lines of two points each, at the point where the endless lines meet.
class PrimitiveToolAngle4 final : public PrimitiveToolLine
{
    Q_OBJECT

public:
    PrimitiveToolAngle4(PrimitiveManager* manager, GraphicsScene* scene, const QPointF& pos);

    int type() const override { return ToolType::Angle4; }
    int minPointCount() const override { return 4; }
    /// Values and label use the meeting point of the step before: it is computed afterwards.
    void moveControlPoint(int index, const QPointF& scenePos) override;
    void updateDimensions() override;
    QPointF labelAnchor() const override;
    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void drawExtension(QPainter* painter, const QPointF& from, const QPointF& to) const;

    QPointF intersection;     ///< Item coordinates.
    int intersectionKind = 0; ///< A QLineF::IntersectType.
};
