#include "canvas/ToolLayer.h"

#include <QGraphicsItem>
#include <QGraphicsView>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace {

/// Antialiasing may touch the pixels next to a bounding rectangle.
constexpr int antialiasingMargin = 2;

QStyleOptionGraphicsItem styleOption(const QGraphicsItem& item)
{
    QStyleOptionGraphicsItem option;
    option.state = QStyle::State_None;
    option.state.setFlag(QStyle::State_Enabled, item.isEnabled());
    option.state.setFlag(QStyle::State_Selected, item.isSelected());
    option.state.setFlag(QStyle::State_HasFocus, item.hasFocus());
    option.exposedRect = item.boundingRect();
    option.rect = option.exposedRect.toAlignedRect();
    return option;
}

} // namespace

ToolLayer::ToolLayer(const QGraphicsView& graphicsView) : view(graphicsView) {}

void ToolLayer::invalidate(const QRect& rect)
{
    if (!allDirty)
        dirty += rect.adjusted(-antialiasingMargin, -antialiasingMargin, antialiasingMargin,
                               antialiasingMargin);
}

void ToolLayer::paint(QPainter* painter, const QRect& exposed)
{
    followView();
    if (allDirty || !dirty.isEmpty())
        refresh();
    const QRect part = exposed & content;
    if (part.isEmpty())
        return;
    const double ratio = picture.devicePixelRatioF();
    const QRectF source(part.x() * ratio, part.y() * ratio, part.width() * ratio,
                        part.height() * ratio);
    painter->drawImage(QRectF(part), picture, source);
}

/// Starts a new picture when the view shows something else than the picture was drawn for.
void ToolLayer::followView()
{
    const double ratio = view.viewport()->devicePixelRatioF();
    const QSize size = (QSizeF(view.viewport()->size()) * ratio).toSize();
    if (picture.size() != size) {
        picture = QImage(size, QImage::Format_ARGB32_Premultiplied);
        picture.setDevicePixelRatio(ratio);
        allDirty = true;
    }
    if (transform != view.viewportTransform()) {
        transform = view.viewportTransform();
        allDirty = true;
    }
}

void ToolLayer::refresh()
{
    const QRect whole = view.viewport()->rect();
    if (allDirty)
        dirty = whole;
    dirty &= whole;
    QPainter painter(&picture);
    clearDirty(&painter);
    painter.setRenderHints(view.renderHints());

    const QRectF area = view.mapToScene(dirty.boundingRect()).boundingRect();
    const auto items =
        view.scene()->items(area, Qt::IntersectsItemBoundingRect, Qt::AscendingOrder, transform);
    for (QGraphicsItem* item : items)
        paintItem(&painter, item);
    dirty = QRegion();
    allDirty = false;
}

void ToolLayer::clearDirty(QPainter* painter)
{
    if (allDirty) {
        picture.fill(Qt::transparent);
        content = QRect();
        return;
    }
    painter->setClipRegion(dirty);
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    painter->fillRect(dirty.boundingRect(), Qt::transparent);
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void ToolLayer::paintItem(QPainter* painter, QGraphicsItem* item)
{
    const QTransform toViewport = item->deviceTransform(transform);
    const QRect place = toViewport.mapRect(item->boundingRect()).toAlignedRect();
    const QRect touched = place.adjusted(-antialiasingMargin, -antialiasingMargin,
                                         antialiasingMargin, antialiasingMargin);
    if (!dirty.intersects(touched))
        return;
    const QStyleOptionGraphicsItem option = styleOption(*item);
    painter->save();
    painter->setTransform(toViewport);
    painter->setOpacity(item->effectiveOpacity());
    item->paint(painter, &option, view.viewport());
    painter->restore();
    content |= touched & view.viewport()->rect();
}
