#pragma once

#include "measure/ToolTypes.h"

#include <QColor>
#include <QGraphicsTextItem>

class GraphicsScene;
class PrimitiveManager;

/// The text that shows a tool's values: a child item of the tool that can be dragged by itself and
/// keeps its size on screen through its own scale.
class PrimitiveDimensionLabel final : public QGraphicsTextItem
{
    Q_OBJECT

public:
    PrimitiveDimensionLabel(PrimitiveManager* manager, GraphicsScene* scene);

    /// Shows the text, laid out only when it is another one than before; an empty text hides it.
    void showHtml(const QString& html);

    QColor border() const { return borderColor; }
    void setBorder(const QColor& color);
    QColor background() const { return backgroundColor; }
    void setBackground(const QColor& color);

    int type() const override { return ToolType::DimensionLabel; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void followScale();

    PrimitiveManager* manager = nullptr;
    GraphicsScene* graphicsScene = nullptr;
    QColor borderColor{120, 120, 120, 128};
    QColor backgroundColor{0, 150, 211, 128};
    QString shown;
};
