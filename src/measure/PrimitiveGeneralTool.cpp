#include "measure/PrimitiveGeneralTool.h"

#include "canvas/GraphicsScene.h"
#include "measure/FiniteNumbers.h"
#include "measure/Geometry.h"
#include "measure/PrimitiveManager.h"
#include "preferences/AttributeKeys.h"

#include <QCursor>
#include <QDebug>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <cmath>

namespace {

QCursor moveCursor()
{
    static const QCursor cursor(QPixmap(QStringLiteral(":/res/cursors/cur_moveitem.png")), 12, 12);
    return cursor;
}

bool isFinite(const QPointF& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

} // namespace

PrimitiveGeneralTool::PrimitiveGeneralTool(PrimitiveManager* toolManager, GraphicsScene* scene,
                                           const QPointF& pos)
    : PrimitiveGeneralTool(toolManager, scene, pos, false)
{
}

PrimitiveGeneralTool::PrimitiveGeneralTool(PrimitiveManager* toolManager, GraphicsScene* scene,
                                           const QPointF& pos, bool positionless)
    : manager(toolManager),
      graphicsScene(scene),
      finished(positionless)
{
    setUp(pos, positionless);
}

PrimitiveGeneralTool::~PrimitiveGeneralTool() = default;

void PrimitiveGeneralTool::setUp(const QPointF& pos, bool positionless)
{
    setFlags(ItemIsMovable | ItemIsSelectable | ItemSendsGeometryChanges);
    setAcceptHoverEvents(true);
    if (positionless) {
        qDebug() << "initial position is not set. ";
    } else {
        qDebug() << "PrimitiveGeneralTool setPos: " << pos;
        qDebug() << "set initial position: " << pos;
        setPos(pos);
    }
    connect(this, &PrimitiveGeneralTool::itemSelectedHasChanged, manager,
            &PrimitiveManager::itemSelectedHasChanged);
    connect(this, &PrimitiveGeneralTool::itemSceneHasChanged, manager,
            &PrimitiveManager::itemSelectedHasChanged);
}

void PrimitiveGeneralTool::setLineWidth(int width)
{
    lineWidth = width;
    updatePainted();
}

void PrimitiveGeneralTool::setLineColor(const QColor& color)
{
    lineColor = color;
    updatePainted();
}

Qt::PenStyle PrimitiveGeneralTool::getLinePenStyle() const
{
    const bool known = linePenStyle >= Qt::NoPen && linePenStyle <= Qt::DashDotDotLine;
    return known ? static_cast<Qt::PenStyle>(linePenStyle) : Qt::SolidLine;
}

void PrimitiveGeneralTool::setLinePenStyle(Qt::PenStyle style)
{
    linePenStyle = style;
    updatePainted();
}

void PrimitiveGeneralTool::setFillColor(const QColor& color)
{
    fillColor = color;
    updatePainted();
}

void PrimitiveGeneralTool::setDimensionAngularRadius(double radius)
{
    prepareGeometryChange();
    dimensionAngularRadius = finiteOrZero(radius);
    updatePainted();
}

void PrimitiveGeneralTool::setCtrlPointRadius(double radius)
{
    prepareGeometryChange();
    ctrlPointRadius = finiteOrZero(radius);
    updatePainted();
}

void PrimitiveGeneralTool::setCtrlPointBorderWidth(double width)
{
    ctrlPointBorderWidth = wholePixels(width);
    updatePainted();
}

void PrimitiveGeneralTool::setCtrlPointBorderColor(const QColor& color)
{
    ctrlPointBorderColor = color;
    updatePainted();
}

void PrimitiveGeneralTool::setCtrlPointFillColor(const QColor& color)
{
    ctrlPointFillColor = color;
    updatePainted();
}

QHash<QString, QVariant> PrimitiveGeneralTool::attributes() const
{
    return {
        {AttributeKeys::lineWidth(), lineWidth},
        {AttributeKeys::lineColor(), lineColor},
        {AttributeKeys::linePenStyle(), linePenStyle},
        {AttributeKeys::fillColor(), fillColor},
        {AttributeKeys::angularDimensionRadius(), dimensionAngularRadius},
        {AttributeKeys::ctrlPointRadius(), ctrlPointRadius},
        {AttributeKeys::ctrlPointBorderWidth(), ctrlPointBorderWidth},
        {AttributeKeys::ctrlPointBorderColor(), ctrlPointBorderColor},
        {AttributeKeys::ctrlPointColor(), ctrlPointFillColor},
    };
}

void PrimitiveGeneralTool::setAttributes(const QHash<QString, QVariant>& attributes)
{
    const auto color = [&](const QString& key) { return attributes.value(key).value<QColor>(); };
    prepareGeometryChange();
    setLineWidth(attributes.value(AttributeKeys::lineWidth()).toInt());
    setLineColor(color(AttributeKeys::lineColor()));
    linePenStyle = attributes.value(AttributeKeys::linePenStyle()).toInt();
    setFillColor(color(AttributeKeys::fillColor()));
    setDimensionAngularRadius(attributes.value(AttributeKeys::angularDimensionRadius()).toDouble());
    setCtrlPointRadius(attributes.value(AttributeKeys::ctrlPointRadius()).toDouble());
    setCtrlPointBorderWidth(attributes.value(AttributeKeys::ctrlPointBorderWidth()).toDouble());
    setCtrlPointBorderColor(color(AttributeKeys::ctrlPointBorderColor()));
    setCtrlPointFillColor(color(AttributeKeys::ctrlPointColor()));
}

double PrimitiveGeneralTool::penScale() const
{
    return manager->penScale();
}

void PrimitiveGeneralTool::addControlPoint(const QPointF& scenePos, bool movesY, bool movesX)
{
    prepareGeometryChange();
    points.append(ControlPoint(mapFromScene(scenePos), movesY, movesX));
}

bool PrimitiveGeneralTool::movePoint(int index, const QPointF& scenePos)
{
    if (index < 0 || index >= points.size())
        return false;
    prepareGeometryChange();
    updatePainted();
    const QPointF target = mapFromScene(scenePos);
    ControlPoint& point = points[index];
    if (point.movesX)
        point.pos.setX(target.x());
    if (point.movesY)
        point.pos.setY(target.y());
    return true;
}

void PrimitiveGeneralTool::moveControlPoint(int index, const QPointF& scenePos)
{
    movePoint(index, scenePos);
}

void PrimitiveGeneralTool::placePoint(const QPointF& scenePos, bool commit)
{
    moveControlPoint(pointCount() - 1, scenePos);
    if (commit)
        commitPoint(scenePos);
}

void PrimitiveGeneralTool::commitPoint(const QPointF& scenePos)
{
    if (pointCount() == minPointCount() && minPointCount() == maxPointCount())
        finished = true;
    else if (pointCount() <= maxPointCount())
        addControlPoint(scenePos, true, true);
}

bool PrimitiveGeneralTool::tryFinish()
{
    if (finished)
        return true;
    const int committed = pointCount() - 1;
    if (committed < minPointCount() || committed > maxPointCount())
        return false;
    finished = true;
    manager->updateScene();
    return true;
}

bool PrimitiveGeneralTool::hitControlPoint(const QPointF& scenePos, int button)
{
    const double radius = ctrlPointRadius * penScale();
    hit.reset();
    hit.pressPos = mapFromScene(scenePos);
    hit.button = button;
    const auto found = std::find_if(points.cbegin(), points.cend(), [&](const ControlPoint& point) {
        return radius >= pointDistance(point.pos, hit.pressPos);
    });
    if (found == points.cend())
        return false;
    hit.index = static_cast<int>(found - points.cbegin());
    hit.point = *found;
    hit.grabOffset = hit.pressPos - found->pos;
    hit.type = PrimitiveHitTest::CtrlPoint;
    return true;
}

bool PrimitiveGeneralTool::dragControlPoint(const QPointF& scenePos)
{
    if (!finished || hit.type != PrimitiveHitTest::CtrlPoint || hit.button != Qt::LeftButton)
        return false;
    moveControlPoint(hit.index, scenePos - hit.grabOffset);
    return true;
}

QRectF PrimitiveGeneralTool::boundingRect() const
{
    if (points.isEmpty())
        return withPointMargin(QRectF());
    double left = pointAt(0).x();
    double right = left;
    double top = pointAt(0).y();
    double bottom = top;
    for (const ControlPoint& point : points) {
        left = std::min(left, point.pos.x());
        right = std::max(right, point.pos.x());
        top = std::min(top, point.pos.y());
        bottom = std::max(bottom, point.pos.y());
    }
    return withPointMargin(QRectF(QPointF(left, top), QPointF(right, bottom)));
}

QRectF PrimitiveGeneralTool::paintedRect() const
{
    const double margin = std::max(lineWidth, ctrlPointBorderWidth) * std::abs(penScale());
    const QRectF discs = PrimitiveGeneralTool::boundingRect();
    return (boundingRect() | discs).adjusted(-margin, -margin, margin, margin);
}

void PrimitiveGeneralTool::updatePainted()
{
    update();
    if (scene())
        scene()->update(mapRectToScene(paintedRect()));
}

QRectF PrimitiveGeneralTool::withPointMargin(const QRectF& rect) const
{
    const double margin = ctrlPointRadius * penScale();
    return rect.adjusted(-margin, -margin, margin, margin);
}

QPainterPath PrimitiveGeneralTool::shape() const
{
    QPolygonF corners;
    corners.reserve(pointCount());
    for (const ControlPoint& point : points)
        corners << point.pos;
    QPainterPath outline;
    outline.addPolygon(corners);
    return shapeAround(outline);
}

QPainterPath PrimitiveGeneralTool::shapeAround(const QPainterPath& outline) const
{
    QPainterPath sensitive = shapeFromPath(outline, outlinePen(), 2 * lineWidth * penScale());
    // Where discs overlap, both count.
    sensitive.setFillRule(Qt::WindingFill);
    const double radius = ctrlPointRadius * penScale();
    for (const ControlPoint& point : points)
        if (isFinite(point.pos))
            sensitive.addEllipse(point.pos, radius, radius);
    return sensitive;
}

QPen PrimitiveGeneralTool::outlinePen() const
{
    return QPen(QBrush(lineColor), lineWidth * penScale(), getLinePenStyle(), Qt::SquareCap,
                Qt::BevelJoin);
}

QPen PrimitiveGeneralTool::guidePen() const
{
    QPen pen = outlinePen();
    pen.setStyle(Qt::DashLine);
    return pen;
}

void PrimitiveGeneralTool::drawControlPoints(QPainter* painter, bool applyScale) const
{
    const double factor = applyScale ? penScale() : 1.0;
    const double radius = ctrlPointRadius * factor;
    painter->setPen(QPen(QBrush(ctrlPointBorderColor), ctrlPointBorderWidth * factor, Qt::SolidLine,
                         Qt::SquareCap, Qt::BevelJoin));
    painter->setBrush(ctrlPointFillColor);
    for (const ControlPoint& point : points)
        if (isFinite(point.pos))
            painter->drawEllipse(point.pos, radius, radius);
}

void PrimitiveGeneralTool::drawControlPointsIfSelected(QPainter* painter,
                                                       const QStyleOptionGraphicsItem* option) const
{
    if (option->state & QStyle::State_Selected)
        drawControlPoints(painter, true);
}

void PrimitiveGeneralTool::drawAngleArc(QPainter* painter, const QPointF& centre,
                                        const QPointF& from, const QPointF& to) const
{
    const QLineF first(centre, from);
    const QLineF second(centre, to);
    const double radius = dimensionAngularRadius * penScale();
    const QRectF square(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    QPainterPath arc;
    arc.arcMoveTo(square, first.angle());
    arc.arcTo(square, first.angle(), first.angleTo(second));
    painter->save();
    painter->setPen(outlinePen());
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(arc);
    painter->restore();
}

void PrimitiveGeneralTool::drawCrossMark(QPainter* painter, const QPointF& centre, int size) const
{
    painter->drawLine(centre + QPointF(-size, -size), centre + QPointF(size, size));
    painter->drawLine(centre + QPointF(size, -size), centre + QPointF(-size, size));
}

void PrimitiveGeneralTool::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !hitControlPoint(event->scenePos(), event->button())) {
        QGraphicsObject::mousePressEvent(event);
        return;
    }
    scene()->clearSelection();
    setSelected(true);
}

void PrimitiveGeneralTool::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    qDebug() << "PrimitiveGeneralTool::mouseMoveEvent";
    if (!dragControlPoint(event->scenePos()))
        QGraphicsObject::mouseMoveEvent(event);
}

void PrimitiveGeneralTool::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    hit.reset();
    QGraphicsObject::mouseReleaseEvent(event);
}

void PrimitiveGeneralTool::hoverMoveEvent(QGraphicsSceneHoverEvent* event)
{
    if (manager->dragMode() != PrimitiveManager::Select)
        return;
    showCursorFor(*event);
    QGraphicsObject::hoverMoveEvent(event);
}

void PrimitiveGeneralTool::showCursorFor(const QGraphicsSceneHoverEvent& event)
{
    hitControlPoint(event.scenePos(), 0);
    if (hit.type != PrimitiveHitTest::CtrlPoint) {
        if (contains(event.pos()))
            setCursor(moveCursor());
    } else if (hit.point.movesX && hit.point.movesY) {
        setCursor(Qt::SizeAllCursor);
    } else if (hit.point.movesY) {
        setCursor(Qt::SizeVerCursor);
    } else if (hit.point.movesX) {
        setCursor(Qt::SizeHorCursor);
    }
}

void PrimitiveGeneralTool::hoverLeaveEvent(QGraphicsSceneHoverEvent* event)
{
    unsetCursor();
    QGraphicsObject::hoverLeaveEvent(event);
}

QVariant PrimitiveGeneralTool::itemChange(GraphicsItemChange change, const QVariant& value)
{
    switch (change) {
    case ItemPositionChange:
        if (scene())
            return QGraphicsObject::itemChange(change, insideScene(value.toPointF()));
        break;
    case ItemSelectedHasChanged:
        qDebug().noquote() << QLatin1String(metaObject()->className()) +
                                  QLatin1String(": itemSelectedHasChanged ")
                           << value.toBool();
        updatePainted();
        emit itemSelectedHasChanged(this, value.toBool());
        break;
    case ItemSceneHasChanged:
        qDebug().noquote() << QLatin1String(metaObject()->className()) +
                                  QLatin1String(": itemSceneHasChanged");
        emit itemSceneHasChanged(this, false);
        break;
    default:
        break;
    }
    return QGraphicsObject::itemChange(change, value);
}

/// The position nearest to `newPos` at which the bounding rectangle stays inside the scene rect.
/// The upper bound is applied last, so it decides for a tool larger than the scene.
QPointF PrimitiveGeneralTool::insideScene(const QPointF& newPos) const
{
    const QRectF whole = scene()->sceneRect();
    const QRectF rect = boundingRect();
    qDebug() << "rectItem: " << rect;
    qDebug() << "rectItemInScene: " << rect.translated(pos());
    qDebug() << "oldPos: " << pos();
    qDebug() << "newPos: " << newPos;
    qDebug() << "QGraphicsScene Rect: " << whole;
    if (whole.contains(rect.translated(newPos)))
        return newPos;
    const double x = std::min(std::max(whole.left() - rect.left(), newPos.x()),
                              whole.right() - rect.width() - rect.left());
    const double y = std::min(std::max(whole.top() - rect.top(), newPos.y()),
                              whole.bottom() - rect.height() - rect.top());
    return {x, y};
}
