#pragma once

#include <QImage>
#include <QRegion>

class QGraphicsItem;
class QGraphicsView;
class QPainter;

/// A transparent picture of all items of a view's scene, in viewport pixels. The view lays it over
/// each frame, so that a frame costs the same whatever number of tools lie on it; only what was
/// invalidated since is drawn anew. Owned by the view. GUI thread.
class ToolLayer
{
public:
    explicit ToolLayer(const QGraphicsView& view);

    /// Marks a part to be drawn anew; viewport coordinates.
    void invalidate(const QRect& rect);
    void invalidateAll();

    /// Brings the layer up to date and draws the part of it that `exposed` covers; the painter is in
    /// viewport coordinates.
    void paint(QPainter* painter, const QRegion& exposed);

private:
    void refresh();
    void paintItem(QPainter* painter, QGraphicsItem* item, const QRect& area);

    const QGraphicsView& view;
    QImage picture;
    QRegion dirty;
    QRegion painted; ///< What may hold anything but transparency.
    bool allDirty = true;
};
