#pragma once

#include "measure/ToolTypes.h"

#include <QColor>
#include <QFont>
#include <QGraphicsTextItem>
#include <QImage>

class GraphicsScene;
class PrimitiveManager;

/// The text that shows a tool's values: a child item of the tool that can be dragged by itself and
/// keeps its size on screen through its own scale. Since the size on screen never changes, the
/// label keeps a picture of itself: laying out and drawing the text anew for each zoom and for each
/// neighbour that moves is by far the dearest part of a canvas full of tools.
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
    /// What the picture shows. Any difference makes a new one.
    struct Look
    {
        QString html;
        QFont font;
        QRgb text = 0;
        QRgb border = 0;
        QRgb background = 0;
        double scale = 0.0; ///< Screen pixels per item unit.
        double pixelRatio = 0.0;

        bool operator==(const Look& other) const;
    };

    void followScale();
    void paintText(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget);
    void paintPicture(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget);
    void makePicture(const QStyleOptionGraphicsItem* option, QWidget* widget);
    Look lookOn(const QPainter& painter) const;

    PrimitiveManager* manager = nullptr;
    GraphicsScene* graphicsScene = nullptr;
    QColor borderColor{120, 120, 120, 128};
    QColor backgroundColor{0, 150, 211, 128};
    QString shown;
    Look look;
    QImage picture;
};
