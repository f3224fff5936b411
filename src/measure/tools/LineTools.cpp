#include "measure/tools/LineTools.h"

#include "canvas/GraphicsScene.h"
#include "measure/DimensionKeys.h"
#include "measure/Geometry.h"
#include "measure/PrimitiveManager.h"

#include <QPainter>

#include <cmath>

PrimitiveToolLine::PrimitiveToolLine(PrimitiveManager* toolManager, GraphicsScene* scene,
                                     const QPointF& pos)
    : PrimitiveDimensionTool(toolManager, scene, pos)
{
    shownKeys = QStringList{DimensionKey::length()};
    addControlPoint(pos, true, true);
    addControlPoint(pos, true, true);
}

PrimitiveToolLine::PrimitiveToolLine(PrimitiveManager* toolManager, GraphicsScene* scene)
    : PrimitiveDimensionTool(toolManager, scene)
{
    shownKeys = QStringList{DimensionKey::length()};
    const QRectF whole = scene->sceneRect();
    const double inset = 0.2 * whole.width();
    const double middle = 0.5 * whole.height();
    addControlPoint(QPointF(inset, middle), true, true);
    addControlPoint(QPointF(whole.right() - inset, middle), true, true);
}

double PrimitiveToolLine::pathLength() const
{
    double sum = 0.0;
    for (int i = 0; i + 1 < pointCount(); ++i)
        sum += pointDistance(pointAt(i), pointAt(i + 1));
    return sum;
}

void PrimitiveToolLine::updateDimensions()
{
    if (pointCount() >= minPointCount())
        setDimension(DimensionKey::length(), manager->lengthToUnit(pathLength()));
    publishDimensions();
}

QPointF PrimitiveToolLine::labelAnchor() const
{
    return pointCount() < 2 ? QPointF() : 0.5 * (pointAt(0) + pointAt(1));
}

void PrimitiveToolLine::drawSegments(QPainter* painter) const
{
    for (int i = 0; i + 1 < pointCount(); ++i)
        painter->drawLine(pointAt(i), pointAt(i + 1));
}

void PrimitiveToolLine::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    painter->save();
    painter->setPen(outlinePen());
    drawSegments(painter);
    drawControlPointsIfSelected(painter, option);
    painter->restore();
}

PrimitiveToolPolyline::PrimitiveToolPolyline(PrimitiveManager* toolManager, GraphicsScene* scene,
                                             const QPointF& pos)
    : PrimitiveToolLine(toolManager, scene, pos)
{
}

PrimitiveToolPolygon::PrimitiveToolPolygon(PrimitiveManager* toolManager, GraphicsScene* scene,
                                           const QPointF& pos)
    : PrimitiveToolPolyline(toolManager, scene, pos)
{
    shownKeys = QStringList{DimensionKey::perimeter(), DimensionKey::area()};
}

void PrimitiveToolPolygon::moveControlPoint(int index, const QPointF& scenePos)
{
    PrimitiveDimensionTool::moveControlPoint(index, scenePos);
    QPolygonF corners;
    corners.reserve(pointCount());
    for (const ControlPoint& point : points)
        corners << point.pos;
    path = QPainterPath();
    path.addPolygon(corners);
    path.closeSubpath();
}

void PrimitiveToolPolygon::updateDimensions()
{
    if (pointCount() >= minPointCount()) {
        setDimension(DimensionKey::area(), manager->areaToUnit(area()));
        setDimension(DimensionKey::perimeter(), manager->lengthToUnit(perimeter()));
    }
    publishDimensions();
}

/// The shoelace form, without the sign of the winding. The sum is rounded to single precision after
/// each term: that precision belongs to the result.
double PrimitiveToolPolygon::area() const
{
    float sum = 0.0F;
    const int count = pointCount();
    for (int i = 0; i < count; ++i) {
        const QPointF& from = pointAt(i);
        const QPointF& to = pointAt((i + 1) % count);
        sum = static_cast<float>(static_cast<double>(sum) +
                                 (from.x() - to.x()) * (to.y() + from.y()));
    }
    return static_cast<double>(std::abs(sum)) * 0.5;
}

double PrimitiveToolPolygon::perimeter() const
{
    return pathLength() + pointDistance(points.last().pos, points.first().pos);
}

QPainterPath PrimitiveToolPolygon::shape() const
{
    return shapeAround(path);
}

void PrimitiveToolPolygon::paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
                                 QWidget*)
{
    painter->save();
    painter->setPen(outlinePen());
    painter->setBrush(fillColor);
    painter->drawPath(path);
    drawControlPointsIfSelected(painter, option);
    painter->restore();
}
