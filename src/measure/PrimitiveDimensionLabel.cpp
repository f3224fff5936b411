#include "measure/PrimitiveDimensionLabel.h"

#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveManager.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QtMath>

namespace {

constexpr int pictureMargin = 1; ///< Around the bounding rectangle, for the frame's pen.
constexpr QStyle::State markedStates = QStyle::State_Selected | QStyle::State_HasFocus;

/// Whether the label's scale undoes the zoom, as on the screen. A render to an image may not.
bool keepsSizeOnScreen(const QPainter& painter)
{
    const QTransform& transform = painter.worldTransform();
    return transform.type() <= QTransform::TxScale && qFuzzyCompare(transform.m11(), 1.0) &&
           qFuzzyCompare(transform.m22(), 1.0);
}

} // namespace

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
    if (keepsSizeOnScreen(*painter) && !(option->state & markedStates))
        paintPicture(painter, option, widget);
    else
        paintText(painter, option, widget);
}

void PrimitiveDimensionLabel::paintText(QPainter* painter, const QStyleOptionGraphicsItem* option,
                                        QWidget* widget)
{
    painter->save();
    painter->setBrush(backgroundColor);
    painter->setPen(borderColor);
    painter->drawRect(boundingRect());
    QGraphicsTextItem::paint(painter, option, widget);
    painter->restore();
}

void PrimitiveDimensionLabel::paintPicture(QPainter* painter,
                                           const QStyleOptionGraphicsItem* option, QWidget* widget)
{
    Look wanted = lookOn(*painter);
    if (!(wanted == look)) {
        look = std::move(wanted);
        makePicture(option, widget);
    }
    const QPointF corner = painter->worldTransform().map(boundingRect().topLeft());
    painter->save();
    painter->resetTransform();
    painter->drawImage(corner.toPoint() - QPoint(pictureMargin, pictureMargin), picture);
    painter->restore();
}

void PrimitiveDimensionLabel::makePicture(const QStyleOptionGraphicsItem* option, QWidget* widget)
{
    const QRectF rect = boundingRect();
    const QSizeF size = rect.size() * look.scale + QSizeF(2 * pictureMargin, 2 * pictureMargin);
    const QSizeF pixels = size * look.pixelRatio;
    picture =
        QImage(qCeil(pixels.width()), qCeil(pixels.height()), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(look.pixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(pictureMargin, pictureMargin);
    painter.scale(look.scale, look.scale);
    painter.translate(-rect.topLeft());
    paintText(&painter, option, widget);
}

PrimitiveDimensionLabel::Look PrimitiveDimensionLabel::lookOn(const QPainter& painter) const
{
    return {shown,
            font(),
            defaultTextColor().rgba(),
            borderColor.rgba(),
            backgroundColor.rgba(),
            painter.worldTransform().m11(),
            painter.device()->devicePixelRatioF()};
}

bool PrimitiveDimensionLabel::Look::operator==(const Look& other) const
{
    return html == other.html && font == other.font && text == other.text &&
           border == other.border && background == other.background &&
           qFuzzyCompare(scale, other.scale) && qFuzzyCompare(pixelRatio, other.pixelRatio);
}
