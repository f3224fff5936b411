#include "canvas/RubberBand.h"

#include <QPainter>
#include <QRubberBand>
#include <QStyleOption>

void paintRubberBand(QPainter* painter, const QRect& band, const QWidget* widget)
{
    QStyleOptionRubberBand option;
    option.initFrom(widget);
    option.rect = band;
    option.shape = QRubberBand::Rectangle;
    QStyleHintReturnMask mask;
    if (widget->style()->styleHint(QStyle::SH_RubberBand_Mask, &option, widget, &mask))
        painter->setClipRegion(mask.region, Qt::IntersectClip);
    widget->style()->drawControl(QStyle::CE_RubberBand, &option, painter, widget);
}
