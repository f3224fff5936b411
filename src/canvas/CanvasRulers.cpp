#include "canvas/CanvasRulers.h"

#include "canvas/GraphicsView.h"
#include "canvas/QtCornerBox.h"
#include "canvas/QtRuleBar.h"

namespace {

constexpr int thickness = 16;

/// A ruler over the view's pixels `first` to `last`, when the picture starts at the pixel `zero`.
void setRange(QtRuleBar* ruler, int first, int last, int zero, double unitsPerPixel)
{
    const double lower = (first - zero) * unitsPerPixel;
    const double upper = (last - thickness - zero) * unitsPerPixel;
    ruler->setRange(lower, upper, upper - lower);
    ruler->update();
}

} // namespace

CanvasRulers::CanvasRulers(GraphicsView& graphicsView)
    : view(graphicsView),
      horizontalRuler(new QtRuleBar(QtRuleBar::Horizontal, &graphicsView, &graphicsView)),
      verticalRuler(new QtRuleBar(QtRuleBar::Vertical, &graphicsView, &graphicsView)),
      cornerBox(new QtCornerBox(&graphicsView))
{
}

void CanvasRulers::layOut(bool visible)
{
    horizontalRuler->setVisible(visible);
    verticalRuler->setVisible(visible);
    cornerBox->setVisible(visible);
    if (!visible)
        return;
    constexpr int inset = thickness + 1;
    horizontalRuler->setGeometry(thickness, 0, view.width() - inset, thickness);
    verticalRuler->setGeometry(0, thickness, thickness, view.height() - inset);
    cornerBox->setGeometry(0, 0, thickness, thickness);
    followView();
}

void CanvasRulers::followView()
{
    const QPoint origin = view.mapFromScene(view.sceneRect().topLeft());
    const double unitsPerPixel = 1.0 / view.transform().m11();
    const QRect whole = view.rect();
    setRange(horizontalRuler, whole.left(), whole.right(), origin.x(), unitsPerPixel);
    setRange(verticalRuler, whole.top(), whole.bottom(), origin.y(), unitsPerPixel);
}

void CanvasRulers::moveMarkers(const QPoint& position)
{
    horizontalRuler->updatePosition(position);
    verticalRuler->updatePosition(position);
}
