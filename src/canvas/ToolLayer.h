#pragma once

#include "canvas/ItemPlaces.h"

#include <QImage>
#include <QRect>
#include <QRegion>
#include <QTransform>

class QGraphicsItem;
class QGraphicsView;
class QPainter;

/// A transparent picture of all items of a view's scene, in viewport pixels. The view lays it over
/// each frame, so that a frame costs the same whatever number of tools lie on it; only what was
/// invalidated since is drawn anew. A layer notices by itself when the view's transform, scroll
/// position or size has changed, and is then drawn anew as a whole. Owned by the view. GUI thread.
class ToolLayer final
{
public:
    explicit ToolLayer(const QGraphicsView& view);

    /// Marks a part to be drawn anew; viewport coordinates.
    void invalidate(const QRect& rect);
    void invalidateAll() { allDirty = true; }
    /// Marks also where the items in the marked parts were painted before, and gives all that is to
    /// be drawn anew now.
    QRegion followItems();

    /// Brings the layer up to date and draws the part of it inside `exposed`; the painter and the
    /// rectangle are in viewport coordinates.
    void paint(QPainter* painter, const QRect& exposed);

private:
    void followView();
    void refresh();
    void clearDirty(QPainter* painter);
    void paintItem(QPainter* painter, QGraphicsItem* item);

    const QGraphicsView& view;
    ItemPlaces places;
    QImage picture;
    QTransform transform; ///< The view's, as the picture was drawn.
    QRegion dirty;
    QRect content; ///< Outside of it the picture is transparent.
    bool allDirty = true;
};
