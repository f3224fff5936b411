#include "canvas/ToolLayer.h"

#include <QGraphicsItem>
#include <QGraphicsView>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace {

/// Many small parts cost more to keep apart than to draw as one.
constexpr int manyParts = 50;

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

ToolLayer::ToolLayer(const QGraphicsView& graphicsView) : view(graphicsView), places(graphicsView)
{
}

void ToolLayer::invalidate(const QRect& rect)
{
    if (dirty.rectCount() > manyParts)
        invalidateAll();
    if (!allDirty)
        dirty += rect;
}

QRegion ToolLayer::followItems()
{
    followView();
    // What is drawn anew may lie over other items that have moved in the meantime.
    while (!allDirty) {
        const QVector<QRect> moved = places.update(dirty);
        if (moved.isEmpty())
            break;
        for (const QRect& rect : moved)
            invalidate(rect);
    }
    return allDirty ? view.viewport()->rect() : dirty;
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
    followItems();
    const QRect whole = view.viewport()->rect();
    if (allDirty) {
        places.reset();
        places.update(whole);
        dirty = whole;
    }
    dirty &= whole;
    QPainter painter(&picture);
    clearDirty(&painter);
    painter.setRenderHints(view.renderHints());
    for (const ItemPlaces::Place& place : places.all()) {
        if (!dirty.intersects(place.rect))
            continue;
        paintItem(&painter, place.item);
        content |= place.rect & whole;
    }
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

/// Draws an item and, over it, its children.
void ToolLayer::paintItem(QPainter* painter, QGraphicsItem* item)
{
    if (!item->isVisible())
        return;
    const QStyleOptionGraphicsItem option = styleOption(*item);
    painter->save();
    painter->setTransform(item->deviceTransform(transform));
    painter->setOpacity(item->effectiveOpacity());
    item->paint(painter, &option, view.viewport());
    painter->restore();
    for (QGraphicsItem* child : item->childItems())
        paintItem(painter, child);
}
