#pragma once

#include <QRect>
#include <QSize>
#include <Qt>

namespace zowidgets {

/// The sizes between which a window may be resized.
struct SizeLimits
{
    QSize minimum;
    QSize maximum;
};

/// The edges that a press at `pos` takes hold of: one on a side, two at a corner, none inside.
/// In window coordinates. Corners reach further along the sides than the border is wide, so that
/// they can be hit.
Qt::Edges edgesAt(const QPoint& pos, const QSize& window, int borderWidth);

/// The pointer that tells in which direction these edges move.
Qt::CursorShape resizeCursor(Qt::Edges edges);

/// The geometry after the given edges were dragged by `by`; without edges the whole window moves.
/// The opposite edges stay where they are, also when a limit is reached.
QRect draggedGeometry(const QRect& start, const QPoint& by, Qt::Edges edges, SizeLimits limits);

} // namespace zowidgets
