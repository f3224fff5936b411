#pragma once

#include <QPoint>

class GraphicsView;
class QtCornerBox;
class QtRuleBar;

/// The rulers along the top and left edge of a canvas and the box where they meet: children of the
/// view, which are kept in line with what it shows. Owned by the view.
class CanvasRulers final
{
public:
    explicit CanvasRulers(GraphicsView& view);

    /// Lays the rulers out along the edges of the view, or hides them.
    void layOut(bool visible);
    /// Takes over the range of picture pixels that the view shows.
    void followView();
    /// Moves the cursor markers; viewport coordinates.
    void moveMarkers(const QPoint& position);

private:
    GraphicsView& view;
    QtRuleBar* horizontalRuler = nullptr;
    QtRuleBar* verticalRuler = nullptr;
    QtCornerBox* cornerBox = nullptr;
};
