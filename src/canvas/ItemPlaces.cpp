#include "canvas/ItemPlaces.h"

#include "measure/PrimitiveGeneralTool.h"

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QHash>

namespace {

/// Antialiasing may touch the pixels next to a painted rectangle.
constexpr int antialiasingMargin = 2;

/// Larger than any scene.
const QRectF everywhere(-1e7, -1e7, 2e7, 2e7);

/// What an item paints, in its coordinates.
QRectF paintedRect(const QGraphicsItem& item)
{
    return Primitive::isGeneralTool(&item)
               ? static_cast<const PrimitiveGeneralTool&>(item).paintedRect()
               : item.boundingRect();
}

/// The top-level items in stacking order; the scene tells that order of visible items only, so the
/// hidden ones stand behind.
QVector<QGraphicsItem*> topLevelItems(const QGraphicsScene& scene,
                                      const QList<QGraphicsItem*>& present)
{
    QVector<QGraphicsItem*> result;
    for (QGraphicsItem* item :
         scene.items(everywhere, Qt::IntersectsItemBoundingRect, Qt::AscendingOrder))
        if (!item->parentItem())
            result << item;
    for (QGraphicsItem* item : present)
        if (!item->parentItem() && !item->isVisible())
            result << item;
    return result;
}

} // namespace

ItemPlaces::ItemPlaces(const QGraphicsView& graphicsView) : view(graphicsView) {}

void ItemPlaces::reset()
{
    known.clear();
    places.clear();
}

QVector<QRect> ItemPlaces::update(const QRegion& changed)
{
    const QList<QGraphicsItem*> present = view.scene()->items();
    if (!present.isSharedWith(known))
        return takeAll(present);
    QVector<QRect> moved;
    for (Place& place : places) {
        if (!changed.intersects(place.rect))
            continue;
        if (place.item->isVisible() != place.visible)
            return takeAll(present);
        const QRect now = placeOf(*place.item);
        if (now == place.rect)
            continue;
        moved << place.rect << now;
        place.rect = now;
    }
    return moved;
}

QVector<QRect> ItemPlaces::takeAll(const QList<QGraphicsItem*>& present)
{
    QHash<const QGraphicsItem*, QRect> before;
    for (const Place& place : places)
        before.insert(place.item, place.rect);
    QVector<QRect> moved;
    places.clear();
    for (QGraphicsItem* item : topLevelItems(*view.scene(), present)) {
        const Place now{item, placeOf(*item), item->isVisible()};
        const QRect old = before.take(item);
        if (old != now.rect)
            moved << old << now.rect;
        places.push_back(now);
    }
    for (const QRect& gone : qAsConst(before))
        moved << gone;
    known = present;
    return moved;
}

QRect ItemPlaces::placeOf(const QGraphicsItem& item) const
{
    const QTransform toViewport = item.deviceTransform(view.viewportTransform());
    QRect place = toViewport.mapRect(paintedRect(item))
                      .toAlignedRect()
                      .adjusted(-antialiasingMargin, -antialiasingMargin, antialiasingMargin,
                                antialiasingMargin);
    for (const QGraphicsItem* child : item.childItems())
        place |= placeOf(*child);
    return place;
}
