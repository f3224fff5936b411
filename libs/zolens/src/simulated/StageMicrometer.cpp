#include "StageMicrometer.h"

#include <QHash>
#include <QPainter>
#include <QPolygonF>
#include <QString>
#include <QStringList>

#include <numeric>

namespace zolens {

namespace {

const QColor ink(24, 26, 32);
constexpr double mediumLine = 45.0;
constexpr double longLine = 64.0;
constexpr double glyphUnit = 4.2; ///< Glyphs stand on a grid of 4 by 6.

/// Engraved glyphs are strokes, so the picture does not depend on the fonts of the machine. Each is
/// a list of points, two digits for x and y on the grid; a stroke ends at a slash.
QString strokesOf(QChar glyph)
{
    static const QHash<QChar, QString> table{
        {u'0', QStringLiteral("10 30 41 45 36 16 05 01 10")},
        {u'1', QStringLiteral("11 20 26")},
        {u'2', QStringLiteral("01 10 30 41 42 06 46")},
        {u'3', QStringLiteral("01 10 30 41 42 33 13 / 33 44 45 36 16 05")},
        {u'4', QStringLiteral("36 30 04 44")},
        {u'5', QStringLiteral("40 00 03 33 44 45 36 06")},
        {u'6', QStringLiteral("40 20 02 05 16 36 45 44 33 03")},
        {u'7', QStringLiteral("00 40 16")},
        {u'8', QStringLiteral("13 02 01 10 30 41 42 33 13 04 05 16 36 45 44 33")},
        {u'9', QStringLiteral("06 26 44 41 30 10 01 02 13 43")},
        {u'.', QStringLiteral("05 06")},
        {u'm', QStringLiteral("03 06 / 04 13 24 26 / 24 33 44 46")},
    };
    return table.value(glyph);
}

void paintGlyph(QPainter& painter, QChar glyph)
{
    const QStringList strokes = strokesOf(glyph).split(u'/');
    for (const QString& stroke : strokes) {
        QPolygonF line;
        const QStringList points = stroke.split(u' ', Qt::SkipEmptyParts);
        for (const QString& point : points)
            line << QPointF(point.at(0).digitValue(), point.at(1).digitValue());
        painter.drawPolyline(line);
    }
}

/// In units of the grid.
double advance(QChar glyph)
{
    return glyph == u'.' || glyph == u' ' ? 3.0 : 5.6;
}

double widthOf(const QString& text)
{
    const double gap = 1.6; // The last glyph has none behind it.
    return std::accumulate(text.begin(), text.end(), -gap,
                           [](double sum, QChar glyph) { return sum + advance(glyph); });
}

void paintText(QPainter& painter, const QPointF& topCentre, const QString& text)
{
    painter.save();
    painter.translate(topCentre);
    painter.scale(glyphUnit, glyphUnit);
    painter.translate(-widthOf(text) / 2, 0);
    painter.setPen(QPen(ink, 0.62, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const QChar glyph : text) {
        paintGlyph(painter, glyph);
        painter.translate(advance(glyph), 0);
    }
    painter.restore();
}

double lineLength(int division)
{
    if (division % 10 == 0)
        return longLine;
    return division % 5 == 0 ? mediumLine : StageMicrometer::shortLine;
}

} // namespace

QPointF StageMicrometer::origin()
{
    return {-pitch * divisions / 2, -330.0};
}

QRectF StageMicrometer::area()
{
    const QPointF left = origin() - QPointF(40, 120);
    return {left, QSizeF(pitch * divisions + 80, 170)};
}

void StageMicrometer::paint(QPainter& painter)
{
    painter.setPen(QPen(ink, lineWidth, Qt::SolidLine, Qt::FlatCap));
    for (int division = 0; division <= divisions; ++division) {
        const QPointF foot = origin() + QPointF(division * pitch, 0);
        painter.drawLine(foot, foot - QPointF(0, lineLength(division)));
    }
    painter.setPen(QPen(ink, lineWidth, Qt::SolidLine, Qt::SquareCap));
    painter.drawLine(origin(), origin() + QPointF(divisions * pitch, 0));
    for (int number = 0; number <= divisions / 10; ++number) {
        const QPointF foot = origin() + QPointF(number * 10 * pitch, 14);
        paintText(painter, foot, QString::number(number * 10));
    }
    const QPointF middle = origin() + QPointF(divisions * pitch / 2, -112);
    paintText(painter, middle, QStringLiteral("0.01 mm"));
}

} // namespace zolens
