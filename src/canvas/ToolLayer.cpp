#include "canvas/ToolLayer.h"

#include "measure/PrimitiveGeneralTool.h"

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

/// What an item paints, in its coordinates.
QRectF paintedRect(const QGraphicsItem& item)
{
    return Primitive::isGeneralTool(&item)
               ? static_cast<const PrimitiveGeneralTool&>(item).paintedRect()
               : item.boundingRect();
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

/// Empty for an item that does not show.
QRect ToolLayer::placeOf(const QGraphicsItem& item) const
{
    if (!item.isVisible())
        return {};
    const QRectF place = item.deviceTransform(transform).mapRect(paintedRect(item));
    return place.toAlignedRect().adjusted(-antialiasingMargin, -antialiasingMargin,
                                          antialiasingMargin, antialiasingMargin);
}

QRegion ToolLayer::invalidateMoved()
{
    // Many small places cost more to keep apart than to draw as one.
    constexpr int manyPlaces = 50;
    followView();
    QVector<QRect> moved;
    QHash<const QGraphicsItem*, QRect> present;
    const auto items = view.scene()->items();
    present.reserve(items.size());
    for (const QGraphicsItem* item : items) {
        const QRect place = placeOf(*item);
        const QRect before = places.take(item);
        if (place != before)
            moved << before << place;
        present.insert(item, place);
    }
    for (const QRect& left : qAsConst(places))
        moved << left;
    places.swap(present);
    if (moved.size() > manyPlaces)
        invalidateAll();
    if (allDirty)
        return view.viewport()->rect();
    QRegion region;
    for (const QRect& place : qAsConst(moved))
        region += place;
    dirty += region;
    return region;
}

void ToolLayer::refresh()
{
    const QRect whole = view.viewport()->rect();
    invalidateMoved();
    if (allDirty)
        dirty = whole;
    dirty &= whole;
    QPainter painter(&picture);
    clearDirty(&painter);
    painter.setRenderHints(view.renderHints());

    // An item may paint beyond its bounding rectangle, by which the scene finds it.
    QRect reach = dirty.boundingRect();
    for (const QRect& place : qAsConst(places))
        if (dirty.intersects(place))
            reach |= place;
    const QRectF area = view.mapToScene(reach).boundingRect();
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
    const QRect place = places.value(item);
    if (!dirty.intersects(place))
        return;
    const QStyleOptionGraphicsItem option = styleOption(*item);
    painter->save();
    painter->setTransform(item->deviceTransform(transform));
    painter->setOpacity(item->effectiveOpacity());
    item->paint(painter, &option, view.viewport());
    painter->restore();
    content |= place & view.viewport()->rect();
}
