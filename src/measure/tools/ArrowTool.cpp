#include "measure/tools/ArrowTool.h"

#include "measure/FiniteNumbers.h"
#include "measure/Geometry.h"

#include <QPainter>

namespace {

enum Point { Tail = 0, FirstWing = 1, SecondWing = 2, Tip = 3 };

/// Whether the foot of the perpendicular from `point` lies on the line between its ends. Tested by
/// the parameter of the foot: its rounded coordinates may lie beside the line.
bool hasFootBetweenEnds(const QPointF& point, const QLineF& line)
{
    const QPointF direction = line.p2() - line.p1();
    const double along = QPointF::dotProduct(point - line.p1(), direction);
    return along >= 0.0 && along <= QPointF::dotProduct(direction, direction) && !line.isNull();
}

} // namespace

PrimitiveToolArrow::PrimitiveToolArrow(PrimitiveManager* toolManager, GraphicsScene* scene,
                                       const QPointF& pos)
    : PrimitiveGeneralTool(toolManager, scene, pos)
{
    for (int i = 0; i < 4; ++i)
        addControlPoint(pos, true, true);
}

void PrimitiveToolArrow::moveControlPoint(int index, const QPointF& scenePos)
{
    const QLineF shaft(pointAt(Tail), pointAt(Tip));
    if (index == FirstWing || index == SecondWing)
        moveWing(index, scenePos, shaft);
    else
        moveEnd(index, scenePos, shaft);
    rebuildArrowPath();
}

/// Moves tail or tip. The head follows the shaft as it was before the move: it lags by one step.
void PrimitiveToolArrow::moveEnd(int index, const QPointF& scenePos, const QLineF& shaft)
{
    movePoint(index, scenePos);
    headBase = shaft.center();
    const auto wings = perpendicularOffsets(0.25 * shaft.length(), shaft.p1(), headBase);
    points[FirstWing] = ControlPoint(wings[0], true, true);
    points[SecondWing] = ControlPoint(wings[1], true, true);
    shaftHalfWidth = wholePixels(0.25 * pointDistance(wings[0], wings[1]));
}

/// Moves a wing handle, which sets place and width of the head; the other handle stays symmetric.
/// Nothing changes while the handle's foot lies beyond an end of the shaft.
void PrimitiveToolArrow::moveWing(int index, const QPointF& scenePos, const QLineF& shaft)
{
    const QPointF target = mapFromScene(scenePos);
    if (!hasFootBetweenEnds(target, shaft))
        return;
    movePoint(index, scenePos);
    const double distance = pointDistance(pointAt(index), headBase);
    headBase = projectOntoLine(target, shaft);
    shaftHalfWidth = wholePixels(0.5 * distance);
    const auto wings = perpendicularOffsets(distance, shaft.p1(), headBase);
    if (index == SecondWing)
        points[FirstWing] = ControlPoint(wings[0], true, true);
    else
        points[SecondWing] = ControlPoint(wings[1], true, true);
}

/// Before there is a place for the head, the arrow is a line from tail to tip.
void PrimitiveToolArrow::rebuildArrowPath()
{
    const QPointF& tail = pointAt(Tail);
    const QPointF& tip = pointAt(Tip);
    path = QPainterPath();
    if (QLineF(tail, headBase).isNull()) {
        path.moveTo(tail);
        path.lineTo(tip);
        return;
    }
    const auto shaft = perpendicularOffsets(shaftHalfWidth, tail, headBase);
    const auto head = perpendicularOffsets(2.0 * shaftHalfWidth, tail, headBase);
    path.addPolygon(QPolygonF({shaft[2], shaft[0], head[0], tip, head[1], shaft[1], shaft[3]}));
    path.closeSubpath();
}

QRectF PrimitiveToolArrow::boundingRect() const
{
    return withPointMargin(path.boundingRect());
}

QPainterPath PrimitiveToolArrow::shape() const
{
    return shapeAround(path);
}

void PrimitiveToolArrow::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    painter->save();
    painter->setPen(outlinePen());
    painter->setBrush(fillColor);
    painter->drawPath(path);
    drawControlPointsIfSelected(painter, option);
    painter->restore();
}
