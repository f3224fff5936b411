#include "WindowEdges.h"

#include <QtGlobal>

namespace zowidgets {

namespace {

constexpr int CornerReach = 12;

/// One dimension of a window: where it starts and how long it is.
struct Span
{
    int start;
    int length;
};

Span dragged(Span span, int by, bool startMoves, bool endMoves, int least, int most)
{
    if (!startMoves && !endMoves)
        return span;
    const int wanted = startMoves ? span.length - by : span.length + by;
    const int length = qBound(least, wanted, qMax(least, most));
    return {startMoves ? span.start + span.length - length : span.start, length};
}

} // namespace

Qt::Edges edgesAt(const QPoint& pos, const QSize& window, int borderWidth)
{
    const int right = window.width() - 1 - pos.x();
    const int bottom = window.height() - 1 - pos.y();
    const int toSide = qMin(pos.x(), right);
    const int toTopOrBottom = qMin(pos.y(), bottom);
    if (toSide < 0 || toTopOrBottom < 0 || qMin(toSide, toTopOrBottom) >= borderWidth)
        return {};

    const bool onSide = toSide < borderWidth;
    const bool onTopOrBottom = toTopOrBottom < borderWidth;
    const int reach = qMax(borderWidth, CornerReach);
    const int reachX = onTopOrBottom ? reach : borderWidth;
    const int reachY = onSide ? reach : borderWidth;

    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, pos.x() < reachX);
    edges.setFlag(Qt::RightEdge, right < reachX && pos.x() >= reachX);
    edges.setFlag(Qt::TopEdge, pos.y() < reachY);
    edges.setFlag(Qt::BottomEdge, bottom < reachY && pos.y() >= reachY);
    return edges;
}

Qt::CursorShape resizeCursor(Qt::Edges edges)
{
    const bool horizontal = edges & (Qt::LeftEdge | Qt::RightEdge);
    const bool vertical = edges & (Qt::TopEdge | Qt::BottomEdge);
    if (!horizontal && !vertical)
        return Qt::ArrowCursor;
    if (!vertical)
        return Qt::SizeHorCursor;
    if (!horizontal)
        return Qt::SizeVerCursor;
    return edges.testFlag(Qt::LeftEdge) == edges.testFlag(Qt::TopEdge) ? Qt::SizeFDiagCursor
                                                                       : Qt::SizeBDiagCursor;
}

QRect draggedGeometry(const QRect& start, const QPoint& by, Qt::Edges edges, SizeLimits limits)
{
    if (!edges)
        return start.translated(by);
    const Span x =
        dragged({start.x(), start.width()}, by.x(), edges.testFlag(Qt::LeftEdge),
                edges.testFlag(Qt::RightEdge), limits.minimum.width(), limits.maximum.width());
    const Span y =
        dragged({start.y(), start.height()}, by.y(), edges.testFlag(Qt::TopEdge),
                edges.testFlag(Qt::BottomEdge), limits.minimum.height(), limits.maximum.height());
    return {x.start, y.start, x.length, y.length};
}

} // namespace zowidgets
