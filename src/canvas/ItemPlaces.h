#pragma once

#include <QList>
#include <QRect>
#include <QRegion>
#include <QVector>

#include <vector>

class QGraphicsItem;
class QGraphicsView;

/// Where the items of a view's scene were last painted, in viewport pixels: one place for each
/// top-level item together with its children, in stacking order. What a scene announces of a change
/// leaves out where the children of a moved item were, what went from outside of the scene rect,
/// and what an item paints beyond its bounding rectangle; the remembered places know. Owned by the
/// layer of tools. GUI thread.
class ItemPlaces final
{
public:
    struct Place
    {
        QGraphicsItem* item = nullptr;
        QRect rect; ///< With room for antialiasing; of hidden items too.
        bool visible = false;
    };

    explicit ItemPlaces(const QGraphicsView& view);

    /// Forgets all places, as after a change of the view's transform.
    void reset();
    /// Takes anew the places that `changed` touches and those of items that came or went. Gives the
    /// old and the new place of each item whose place is another one now.
    QVector<QRect> update(const QRegion& changed);

    /// In stacking order, from the lowest.
    const std::vector<Place>& all() const { return places; }

private:
    QVector<QRect> takeAll(const QList<QGraphicsItem*>& present);
    QRect placeOf(const QGraphicsItem& item) const;

    const QGraphicsView& view;
    std::vector<Place> places;
    QList<QGraphicsItem*> known; ///< The scene's own list, shared with it while it is the same.
};
