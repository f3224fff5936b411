#include "canvas/GraphicsScene.h"

#include "canvas/GraphicsView.h"
#include "canvas/ZoomLevel.h"
#include "measure/PrimitiveManager.h"

#include <QGraphicsSceneMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

const QPointF noCross(-1.0, -1.0);

/// Fills what of `rect` the picture does not cover. The strips reach a scene unit or more under the
/// picture's edge, so that no seam shows between the two.
void fillAround(QPainter* painter, const QRectF& rect, const QRectF& picture, const QBrush& brush)
{
    if (picture.contains(rect))
        return;
    const double overlap = std::max(1.0, 1.0 / std::abs(painter->worldTransform().m11()));
    const QRectF covered = picture.adjusted(overlap, overlap, -overlap, -overlap);
    if (!covered.isValid() || !covered.intersects(rect)) {
        painter->fillRect(rect, brush);
        return;
    }
    const auto fill = [&](double left, double top, double right, double bottom) {
        if (left < right && top < bottom)
            painter->fillRect(QRectF(QPointF(left, top), QPointF(right, bottom)), brush);
    };
    const double top = std::max(rect.top(), covered.top());
    const double bottom = std::min(rect.bottom(), covered.bottom());
    fill(rect.left(), rect.top(), rect.right(), covered.top());
    fill(rect.left(), covered.bottom(), rect.right(), rect.bottom());
    fill(rect.left(), top, covered.left(), bottom);
    fill(covered.right(), top, rect.right(), bottom);
}

/// What a view of `visible` puts into a picture: without the margins around the scene.
QRectF withoutMargins(const QRectF& visible, const QRectF& scene)
{
    QRectF source = visible;
    if (visible.left() < 0.0) {
        source.moveLeft(0.0);
        source.setWidth(scene.width());
    }
    if (visible.top() < 0.0) {
        source.moveTop(0.0);
        source.setHeight(scene.height());
    }
    return source;
}

} // namespace

GraphicsScene::GraphicsScene(GraphicsView* graphicsView)
    : QGraphicsScene(graphicsView),
      view(graphicsView)
{
    setItemIndexMethod(NoIndex);
    setBackgroundBrush(QColor(16, 16, 16, 255));
    primitiveManager = std::make_unique<PrimitiveManager>(this);
}

GraphicsScene::~GraphicsScene()
{
    // The tools use the manager until they are gone.
    clear();
}

void GraphicsScene::setCrossVisible(bool visible)
{
    crossVisible = visible;
    moveCross(noCross);
}

void GraphicsScene::setCrossArmed(bool armed)
{
    crossArmed = armed;
    view->repaintPicture();
}

void GraphicsScene::moveCross(const QPointF& scenePos)
{
    crossPosition = scenePos;
    view->repaintPicture();
}

QImage GraphicsScene::renderVisible()
{
    primitiveManager->freezeScale(true);
    const QRectF source =
        withoutMargins(view->mapToScene(view->rect()).boundingRect(), sceneRect());
    const QRectF target(QPointF(), source.size());
    QImage result(target.size().toSize(), QImage::Format_RGB32);
    if (!result.isNull()) {
        result.fill(backgroundBrush().color());
        QPainter painter(&result);
        painter.setRenderHints(view->renderHints());
        render(&painter, target, source, Qt::KeepAspectRatio);
    }
    primitiveManager->freezeScale(false);
    return result;
}

bool GraphicsScene::isDragging() const
{
    return primitiveManager->dragMode() == PrimitiveManager::Drag;
}

void GraphicsScene::keyPressEvent(QKeyEvent* event)
{
    if (!isDragging())
        QGraphicsScene::keyPressEvent(event);
}

void GraphicsScene::keyReleaseEvent(QKeyEvent* event)
{
    if (!isDragging())
        QGraphicsScene::keyReleaseEvent(event);
}

void GraphicsScene::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    if (isDragging())
        return;
    if (primitiveManager->handleMousePress(event)) {
        event->accept();
        return;
    }
    QGraphicsScene::mousePressEvent(event);
    primitiveManager->settleConstruction();
}

void GraphicsScene::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    if (isDragging())
        return;
    if (crossVisible && primitiveManager->dragMode() != PrimitiveManager::Select)
        moveCross(event->scenePos());
    if (primitiveManager->handleMouseMove(event))
        event->accept();
    else
        QGraphicsScene::mouseMoveEvent(event);
}

void GraphicsScene::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    if (!isDragging() && !primitiveManager->handleMouseRelease(event))
        QGraphicsScene::mouseReleaseEvent(event);
}

void GraphicsScene::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event)
{
    if (!isDragging() && !primitiveManager->handleMouseDoubleClick(event))
        QGraphicsScene::mouseDoubleClickEvent(event);
}

void GraphicsScene::wheelEvent(QGraphicsSceneWheelEvent* event)
{
    if (!isDragging())
        QGraphicsScene::wheelEvent(event);
}

void GraphicsScene::drawBackground(QPainter* painter, const QRectF& rect)
{
    if (image.isNull()) {
        QGraphicsScene::drawBackground(painter, rect);
        return;
    }
    const QRectF picture = image.rect();
    fillAround(painter, rect, picture, backgroundBrush());
    const QRectF part = rect & picture;
    painter->drawImage(part, image, part);
}

void GraphicsScene::drawForeground(QPainter* painter, const QRectF&)
{
    if (!crossVisible || !crossArmed)
        return;
    const double onePixel = 1.0 / ZoomLevel::toScale(view->level());
    const QRectF whole = sceneRect();
    const double x = crossPosition.x();
    const double y = crossPosition.y();
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(
        QPen(QBrush(Qt::darkGray), onePixel, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter->drawLine(QPointF(std::min(x, whole.left()), y),
                      QPointF(std::max(x, whole.right()), y));
    painter->drawLine(QPointF(x, std::min(y, whole.top())),
                      QPointF(x, std::max(y, whole.bottom())));
}
