#include "measure/PrimitiveDimensionLabel.h"

#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveManager.h"

#include <QPainter>

PrimitiveDimensionLabel::PrimitiveDimensionLabel(PrimitiveManager* toolManager,
                                                 GraphicsScene* scene)
    : manager(toolManager),
      graphicsScene(scene)
{
    setFlags(ItemIsMovable | ItemIsSelectable);
    followScale();
    connect(graphicsScene->graphicsView(), &GraphicsView::matrixChanged, this,
            &PrimitiveDimensionLabel::followScale);
}

void PrimitiveDimensionLabel::followScale()
{
    setScale(manager->penScale());
}

void PrimitiveDimensionLabel::showHtml(const QString& html)
{
    if (html != shown) {
        shown = html;
        setHtml(html);
    }
    setVisible(!html.isEmpty());
}

void PrimitiveDimensionLabel::setBorder(const QColor& color)
{
    borderColor = color;
    update();
}

void PrimitiveDimensionLabel::setBackground(const QColor& color)
{
    backgroundColor = color;
    update();
}

void PrimitiveDimensionLabel::paint(QPainter* painter, const QStyleOptionGraphicsItem* option,
                                    QWidget* widget)
{
    painter->save();
    painter->setBrush(backgroundColor);
    painter->setPen(borderColor);
    painter->drawRect(boundingRect());
    QGraphicsTextItem::paint(painter, option, widget);
    painter->restore();
}
