#pragma once

#include "measure/PrimitiveDimensionTool.h"

#include <QPainterPath>

/// A straight line between two points; measures its length.
class PrimitiveToolLine : public PrimitiveDimensionTool
{
    Q_OBJECT

public:
    PrimitiveToolLine(PrimitiveManager* manager, GraphicsScene* scene, const QPointF& pos);
    /// A finished line across the middle of the scene.
    PrimitiveToolLine(PrimitiveManager* manager, GraphicsScene* scene);

    int type() const override { return ToolType::Line; }
    int minPointCount() const override { return 2; }
    void updateDimensions() override;
    QPointF labelAnchor() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    /// The sum of the distances of consecutive points, in pixels.
    double pathLength() const;
    void drawSegments(QPainter* painter) const;
};

/// An open line through any number of points, ended by a right click; measures its length.
class PrimitiveToolPolyline : public PrimitiveToolLine
{
    Q_OBJECT

public:
    PrimitiveToolPolyline(PrimitiveManager* manager, GraphicsScene* scene, const QPointF& pos);

    int type() const override { return ToolType::Polyline; }
    int minPointCount() const override { return 3; }
    int maxPointCount() const override { return 1000; }
};

/// A closed outline through any number of points, ended by a right click; measures area and
/// perimeter. Its interior is not sensitive to the mouse.
class PrimitiveToolPolygon final : public PrimitiveToolPolyline
{
    Q_OBJECT

public:
    PrimitiveToolPolygon(PrimitiveManager* manager, GraphicsScene* scene, const QPointF& pos);

    int type() const override { return ToolType::Polygon; }
    void moveControlPoint(int index, const QPointF& scenePos) override;
    void updateDimensions() override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    double area() const;
    double perimeter() const;

    QPainterPath path;
};
