#include "measure/tools/AngleTools.h"

#include "measure/DimensionKeys.h"
#include "measure/Geometry.h"

#include <QDebug>
#include <QPainter>

namespace {

/// Farther than any picture reaches, and near enough to be counted in pixels at every zoom. Nearly
/// parallel lines meet beyond.
const QRectF reach(-1e6, -1e6, 2e6, 2e6);

QRectF squareAround(const QPointF& centre, double radius)
{
    return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
}

} // namespace

PrimitiveToolAngle::PrimitiveToolAngle(PrimitiveManager* toolManager, GraphicsScene* scene,
                                       const QPointF& pos)
    : PrimitiveToolLine(toolManager, scene, pos)
{
    shownKeys = QStringList{DimensionKey::angle()};
}

void PrimitiveToolAngle::updateDimensions()
{
    if (pointCount() >= minPointCount()) {
        const QLineF first(pointAt(1), pointAt(0));
        setDimension(DimensionKey::angle(), first.angleTo(QLineF(pointAt(1), pointAt(2))));
    }
    publishDimensions();
}

QPointF PrimitiveToolAngle::labelAnchor() const
{
    return pointCount() < minPointCount() ? QPointF() : pointAt(1);
}

QRectF PrimitiveToolAngle::boundingRect() const
{
    const QRectF general = PrimitiveGeneralTool::boundingRect();
    if (pointCount() < minPointCount())
        return general;
    const double radius = dimensionAngularRadius * penScale();
    qDebug() << "rad: " << radius;
    return squareAround(pointAt(1), radius) | general;
}

void PrimitiveToolAngle::paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
                               QWidget* widget)
{
    PrimitiveToolLine::paint(painter, option, widget);
    if (pointCount() >= minPointCount())
        drawAngleArc(painter, pointAt(1), pointAt(0), pointAt(2));
}

PrimitiveToolAngle4::PrimitiveToolAngle4(PrimitiveManager* toolManager, GraphicsScene* scene,
                                         const QPointF& pos)
    : PrimitiveToolLine(toolManager, scene, pos)
{
    shownKeys = QStringList{DimensionKey::angle()};
}

void PrimitiveToolAngle4::moveControlPoint(int index, const QPointF& scenePos)
{
    PrimitiveDimensionTool::moveControlPoint(index, scenePos);
    if (pointCount() < minPointCount())
        return;
    const QLineF first(pointAt(0), pointAt(1));
    intersectionKind = first.intersects(QLineF(pointAt(2), pointAt(3)), &intersection);
}

void PrimitiveToolAngle4::updateDimensions()
{
    if (pointCount() >= minPointCount() && intersectionKind != QLineF::NoIntersection) {
        const QLineF first(intersection, pointAt(1));
        setDimension(DimensionKey::angle(), first.angleTo(QLineF(intersection, pointAt(3))));
    }
    publishDimensions();
}

QPointF PrimitiveToolAngle4::labelAnchor() const
{
    return pointCount() < minPointCount() ? QPointF() : pointAt(1);
}

QRectF PrimitiveToolAngle4::boundingRect() const
{
    const QRectF general = PrimitiveGeneralTool::boundingRect();
    if (pointCount() < minPointCount() || intersectionKind == QLineF::NoIntersection)
        return general;
    const QRectF arc = squareAround(intersection, dimensionAngularRadius * penScale());
    return ((arc | general) & reach) | general;
}

void PrimitiveToolAngle4::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    painter->save();
    painter->setPen(outlinePen());
    if (pointCount() >= 2)
        painter->drawLine(pointAt(0), pointAt(1));
    if (pointCount() >= minPointCount())
        painter->drawLine(pointAt(2), pointAt(3));
    if (intersectionKind != QLineF::NoIntersection) {
        drawExtension(painter, pointAt(0), pointAt(1));
        drawExtension(painter, pointAt(2), pointAt(3));
        drawAngleArc(painter, intersection, pointAt(1), pointAt(3));
    }
    drawControlPointsIfSelected(painter, option);
    painter->restore();
}

/// A dashed line from the nearer end to the meeting point, where that lies beyond the segment.
void PrimitiveToolAngle4::drawExtension(QPainter* painter, const QPointF& from,
                                        const QPointF& to) const
{
    const double fromEnd = pointDistance(intersection, from);
    const double toEnd = pointDistance(intersection, to);
    if (toEnd + fromEnd <= pointDistance(from, to))
        return;
    painter->setPen(guidePen());
    painter->drawLine(fromEnd > toEnd ? to : from, intersection);
}
