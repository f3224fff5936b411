#include "MessageIcons.h"

#include "Colours.h"

#include <QPainter>
#include <QPainterPath>

#include <optional>

namespace zostyle {

namespace {

/// Icons are drawn on a square grid of this many units.
constexpr int Grid = 24;
constexpr qreal Stroke = 2.0;

struct Drawing
{
    Tone tone;
    QPainterPath outline;
    QPainterPath sign;
};

QPainterPath circle()
{
    QPainterPath path;
    path.addEllipse(QPointF(12, 12), 10, 10);
    return path;
}

QPainterPath triangle()
{
    QPainterPath path;
    path.addPolygon(QVector<QPointF>{{12, 2.5}, {22, 20.5}, {2, 20.5}});
    path.closeSubpath();
    return path;
}

/// A stroke of no length: with round caps it is a dot.
void addDot(QPainterPath& path, const QPointF& at)
{
    path.moveTo(at);
    path.lineTo(at + QPointF(0.01, 0));
}

QPainterPath stem(const QPointF& from, const QPointF& to, const QPointF& dot)
{
    QPainterPath path(from);
    path.lineTo(to);
    addDot(path, dot);
    return path;
}

QPainterPath questionMark()
{
    QPainterPath path(QPointF(9, 9.5));
    path.cubicTo(QPointF(9, 5.5), QPointF(15, 5.5), QPointF(15, 9.5));
    path.cubicTo(QPointF(15, 12), QPointF(12, 11.5), QPointF(12, 14));
    addDot(path, QPointF(12, 17.5));
    return path;
}

QPainterPath cross()
{
    QPainterPath path(QPointF(8.5, 8.5));
    path.lineTo(15.5, 15.5);
    path.moveTo(15.5, 8.5);
    path.lineTo(8.5, 15.5);
    return path;
}

std::optional<Drawing> drawing(QStyle::StandardPixmap kind)
{
    switch (kind) {
    case QStyle::SP_MessageBoxInformation:
        return Drawing{Tone::Accent, circle(), stem({12, 11}, {12, 17}, {12, 7})};
    case QStyle::SP_MessageBoxQuestion:
        return Drawing{Tone::Accent, circle(), questionMark()};
    case QStyle::SP_MessageBoxWarning:
        return Drawing{Tone::Warning, triangle(), stem({12, 9}, {12, 13.5}, {12, 17})};
    case QStyle::SP_MessageBoxCritical:
        return Drawing{Tone::Error, circle(), cross()};
    default:
        return {};
    }
}

QPixmap paint(const Drawing& drawing, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(qreal(size) / Grid, qreal(size) / Grid);
    painter.setPen(QPen(colour(drawing.tone), Stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(drawing.outline);
    painter.drawPath(drawing.sign);
    return pixmap;
}

} // namespace

QIcon messageIcon(QStyle::StandardPixmap kind)
{
    QIcon icon;
    if (const auto found = drawing(kind)) {
        for (const int size : {16, 24, 32, 48, 64, 96, 128})
            icon.addPixmap(paint(*found, size));
    }
    return icon;
}

} // namespace zostyle
