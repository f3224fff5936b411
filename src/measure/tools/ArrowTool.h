#pragma once

#include "measure/PrimitiveGeneralTool.h"

#include <QPainterPath>

/// A block arrow, an annotation that measures nothing. Its points are the tail (0), the two wing
/// handles (1 and 2), which set width and place of the head, and the tip (3).
class PrimitiveToolArrow final : public PrimitiveGeneralTool
{
    Q_OBJECT

public:
    PrimitiveToolArrow(PrimitiveManager* manager, GraphicsScene* scene, const QPointF& pos);

    int type() const override { return ToolType::Arrow; }
    int minPointCount() const override { return 4; }
    void moveControlPoint(int index, const QPointF& scenePos) override;
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void moveEnd(int index, const QPointF& scenePos, const QLineF& shaft);
    void moveWing(int index, const QPointF& scenePos, const QLineF& shaft);
    void rebuildArrowPath();

    QPainterPath path;
    int shaftHalfWidth = 0; ///< Pixels.
    QPointF headBase;       ///< Where the head starts on the shaft.
};
