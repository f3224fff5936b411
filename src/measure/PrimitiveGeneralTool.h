#pragma once

#include "measure/ControlPoint.h"
#include "measure/Primitive.h"
#include "measure/PrimitiveHitTest.h"

#include <QColor>
#include <QGraphicsObject>
#include <QHash>
#include <QPen>
#include <QVariant>
#include <QVector>

class GraphicsScene;
class PrimitiveManager;

/// The base of every tool that is made of control points: it is built point by point, lets its
/// points be grabbed and moved, stays inside the picture and exposes its look as an attribute hash.
/// Owned by the scene once it is added, deleted by the manager alone. GUI thread.
///
/// Coordinates. Control points are in item coordinates; the item stands where it was first pressed,
/// so that the first point is (0, 0). Widths and radii are in device pixels and are multiplied by
/// penScale() at each use, so that a tool keeps its size on screen under any zoom. Bounding
/// rectangle and shape therefore depend on the zoom: the scene keeps no index of them, and the view
/// redraws its layer of tools after every change of its transform.
///
/// A tool is under construction until `finished`: its last point follows the mouse.
class PrimitiveGeneralTool : public QGraphicsObject, public Primitive
{
    Q_OBJECT
    Q_PROPERTY(int lineWidth READ getLineWidth WRITE setLineWidth)
    Q_PROPERTY(QColor lineColor READ getLineColor WRITE setLineColor)
    Q_PROPERTY(Qt::PenStyle linePenStyle READ getLinePenStyle WRITE setLinePenStyle)
    Q_PROPERTY(QColor fillColor READ getFillColor WRITE setFillColor)
    Q_PROPERTY(double dimensionAngularRadius READ getDimensionAngularRadius WRITE
                   setDimensionAngularRadius)
    Q_PROPERTY(double ctrlPointRadius READ getCtrlPointRadius WRITE setCtrlPointRadius)
    Q_PROPERTY(
        double ctrlPointBorderWidth READ getCtrlPointBorderWidth WRITE setCtrlPointBorderWidth)
    Q_PROPERTY(
        QColor ctrlPointBorderColor READ getCtrlPointBorderColor WRITE setCtrlPointBorderColor)
    Q_PROPERTY(QColor ctrlPointFillColor READ getCtrlPointFillColor WRITE setCtrlPointFillColor)

public:
    /// A tool under construction that stands at a scene position.
    PrimitiveGeneralTool(PrimitiveManager* manager, GraphicsScene* scene, const QPointF& pos);
    ~PrimitiveGeneralTool() override;

    const QVector<ControlPoint>& controlPoints() const { return points; }
    bool isFinished() const { return finished; }
    /// Ends the construction when enough points are committed, the one that follows the mouse not
    /// counting. False when they are not.
    bool tryFinish();
    /// The tool's row in the table of values; dimension tools only.
    int id() const { return data(0).toInt(); }
    const PrimitiveHitTest& hitTest() const { return hit; }

    int getLineWidth() const { return lineWidth; }
    void setLineWidth(int width);
    QColor getLineColor() const { return lineColor; }
    void setLineColor(const QColor& color);
    /// A stored number that is no pen style counts as a solid line.
    Qt::PenStyle getLinePenStyle() const;
    void setLinePenStyle(Qt::PenStyle style);
    QColor getFillColor() const { return fillColor; }
    void setFillColor(const QColor& color);
    double getDimensionAngularRadius() const { return dimensionAngularRadius; }
    void setDimensionAngularRadius(double radius);
    double getCtrlPointRadius() const { return ctrlPointRadius; }
    void setCtrlPointRadius(double radius);
    double getCtrlPointBorderWidth() const { return ctrlPointBorderWidth; }
    void setCtrlPointBorderWidth(double width);
    QColor getCtrlPointBorderColor() const { return ctrlPointBorderColor; }
    void setCtrlPointBorderColor(const QColor& color);
    QColor getCtrlPointFillColor() const { return ctrlPointFillColor; }
    void setCtrlPointFillColor(const QColor& color);

    /// The hash is to be complete: what it lacks becomes 0 or an invalid colour.
    virtual void setAttributes(const QHash<QString, QVariant>& attributes);
    virtual QHash<QString, QVariant> attributes() const;
    /// Finds the control point under a scene position and stores what it found; `button` is the
    /// mouse button, 0 for hovering. Where discs overlap, the lowest index wins.
    virtual bool hitControlPoint(const QPointF& scenePos, int button);
    /// Moves the control point that the left button has grabbed; false when there is none.
    virtual bool dragControlPoint(const QPointF& scenePos);
    /// One step of the construction: moves the last point and, with `commit`, fixes it.
    virtual void placePoint(const QPointF& scenePos, bool commit);
    virtual int minPointCount() const = 0;
    virtual int maxPointCount() const { return minPointCount(); }
    /// Moves a point as far as its flags allow; an index that does not exist is ignored.
    virtual void moveControlPoint(int index, const QPointF& scenePos);

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    /// Where the tool paints, item coordinates: line widths and all discs reach beyond the bounding
    /// rectangle, which clamps and finds the tool.
    QRectF paintedRect() const;

signals:
    void itemSelectedHasChanged(QGraphicsObject* object, bool selected);
    void itemSceneHasChanged(QGraphicsObject* object, bool selected);

protected:
    /// With `positionless` the item stays at the origin and counts as finished from the start.
    PrimitiveGeneralTool(PrimitiveManager* manager, GraphicsScene* scene, const QPointF& pos,
                         bool positionless);

    void hoverMoveEvent(QGraphicsSceneHoverEvent* event) override;
    void hoverLeaveEvent(QGraphicsSceneHoverEvent* event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

    double penScale() const;
    int pointCount() const { return points.size(); }
    const QPointF& pointAt(int index) const { return points[index].pos; }
    void addControlPoint(const QPointF& scenePos, bool movesY, bool movesX);
    /// Moves a point without anything that follows from it; false for an index that does not exist.
    bool movePoint(int index, const QPointF& scenePos);
    /// Ends the construction at the last point of a fixed figure, or else adds the next one.
    void commitPoint(const QPointF& scenePos);

    QPen outlinePen() const;
    QPen guidePen() const;
    /// A band around `outline`, three line widths wide, and the discs of the control points.
    QPainterPath shapeAround(const QPainterPath& outline) const;
    /// Grown on all sides by the radius of the control points.
    QRectF withPointMargin(const QRectF& rect) const;
    void drawControlPoints(QPainter* painter, bool applyScale) const;
    void drawControlPointsIfSelected(QPainter* painter,
                                     const QStyleOptionGraphicsItem* option) const;
    /// Marks the angle at `centre` from one ray counter-clockwise to the other.
    void drawAngleArc(QPainter* painter, const QPointF& centre, const QPointF& from,
                      const QPointF& to) const;
    void drawCrossMark(QPainter* painter, const QPointF& centre, int size) const;

    QVector<ControlPoint> points;
    PrimitiveManager* manager = nullptr;
    GraphicsScene* graphicsScene = nullptr;
    bool finished = false;
    PrimitiveHitTest hit;
    int lineWidth = 0;
    QColor lineColor;
    int linePenStyle = Qt::SolidLine;
    QColor fillColor;
    double ctrlPointRadius = 0.0;
    int ctrlPointBorderWidth = 0;
    QColor ctrlPointBorderColor;
    QColor ctrlPointFillColor;
    double dimensionAngularRadius = 0.0;

private:
    void setUp(const QPointF& pos, bool positionless);
    /// Has all that the tool paints drawn anew.
    void updatePainted();
    QPointF insideScene(const QPointF& newPos) const;
    void showCursorFor(const QGraphicsSceneHoverEvent& event);
};
