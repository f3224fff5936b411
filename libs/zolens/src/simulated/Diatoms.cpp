#include "Diatoms.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <cmath>

namespace zolens {

namespace {

void paintChambers(QPainter& painter, const QPointF& centre, double radius)
{
    const double spacing = radius / 11;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(176, 156, 104));
    for (int ring = 1; ring <= 9; ++ring) {
        const int chambers = 6 * ring;
        for (int i = 0; i < chambers; ++i) {
            const double angle = 2 * M_PI * (i + 0.5 * (ring & 1)) / chambers;
            painter.drawEllipse(centre + spacing * ring * QPointF(std::cos(angle), std::sin(angle)),
                                3.1, 3.1);
        }
    }
}

QPainterPath spindle(double length, double width)
{
    QPainterPath path(QPointF(-length / 2, 0));
    path.cubicTo(-length / 4, -width * 0.72, length / 4, -width * 0.72, length / 2, 0);
    path.cubicTo(length / 4, width * 0.72, -length / 4, width * 0.72, -length / 2, 0);
    return path;
}

/// On both sides of the seam, clipped by the outline.
void paintRibs(QPainter& painter, double length, double width)
{
    constexpr double spacing = 5.0;
    constexpr double seam = 3.0;
    painter.setPen(QPen(QColor(178, 164, 104), 1.5));
    const int ribs = static_cast<int>(length / spacing);
    for (int rib = 0; rib <= ribs; ++rib) {
        const double x = rib * spacing - length / 2;
        painter.drawLine(QPointF(x, -width), QPointF(x, -seam));
        painter.drawLine(QPointF(x, seam), QPointF(x, width));
    }
}

} // namespace

void paintCentricDiatom(QPainter& painter, const QPointF& centre, double radius)
{
    QRadialGradient body(centre, radius);
    body.setColorAt(0.0, QColor(238, 226, 178));
    body.setColorAt(0.75, QColor(222, 204, 140));
    body.setColorAt(0.93, QColor(176, 150, 84));
    body.setColorAt(1.0, QColor(96, 78, 44));
    painter.setPen(QPen(QColor(70, 58, 36), 3));
    painter.setBrush(body);
    painter.drawEllipse(centre, radius, radius);
    paintChambers(painter, centre, radius);
}

void paintPennateDiatom(QPainter& painter, const QPointF& centre, double angle, double length)
{
    const double width = length * 0.2;
    const QPainterPath outline = spindle(length, width);
    painter.save();
    painter.translate(centre);
    painter.rotate(angle);
    painter.setPen(QPen(QColor(84, 74, 40), 2.4));
    painter.setBrush(QColor(232, 222, 164));
    painter.drawPath(outline);
    painter.setClipPath(outline);
    paintRibs(painter, length, width);
    painter.setPen(QPen(QColor(120, 104, 58), 1.6));
    painter.drawLine(QPointF(-length / 2, 0), QPointF(length / 2, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(206, 168, 70));
    painter.drawEllipse(QPointF(-length * 0.17, 0), length * 0.11, width * 0.24);
    painter.drawEllipse(QPointF(length * 0.17, 0), length * 0.11, width * 0.24);
    painter.restore();
}

} // namespace zolens
