#include "Tissue.h"

#include "Outlines.h"

#include <QPainter>
#include <QRadialGradient>

#include <cmath>

namespace zolens {

namespace {

constexpr double tissueSpacing = 60.0;
constexpr QPointF tissueMiddle(-700, 260);

std::uint32_t tissueKey(int column, int row)
{
    return static_cast<std::uint32_t>((row + 100) * 1000 + column + 100);
}

/// Cells stand in rows, each shifted by half a cell, and none quite in its place.
QPointF tissueCentre(int column, int row)
{
    const std::uint32_t key = tissueKey(column, row);
    const QPointF grid((column + (row & 1) * 0.5) * tissueSpacing, row * tissueSpacing * 0.87);
    return tissueMiddle + grid + QPointF(between(-10, 10, key, 5), between(-10, 10, key, 6));
}

/// A cell meets two neighbours at each corner, so all agree where the corners are.
QPolygonF tissueCorners(int column, int row)
{
    const int left = column - 1 + (row & 1);
    const QPointF neighbours[] = {tissueCentre(column + 1, row), tissueCentre(left + 1, row + 1),
                                  tissueCentre(left, row + 1),   tissueCentre(column - 1, row),
                                  tissueCentre(left, row - 1),   tissueCentre(left + 1, row - 1)};
    const QPointF centre = tissueCentre(column, row);
    QPolygonF corners;
    for (int i = 0; i < 6; ++i) {
        const QPointF corner = (centre + neighbours[i] + neighbours[(i + 1) % 6]) / 3;
        corners << centre + (corner - centre) * 0.965;
    }
    return corners;
}

void paintNucleus(QPainter& painter, const QPointF& centre, double radius, std::uint32_t key)
{
    QRadialGradient stain(centre, radius * 1.15);
    stain.setColorAt(0.0, QColor(176, 146, 208));
    stain.setColorAt(1.0, QColor(134, 100, 178));
    painter.setPen(QPen(QColor(148, 118, 186), 1.4));
    painter.setBrush(stain);
    painter.drawPath(blob(centre, radius, 0.14, key + 7));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(150, 120, 184));
    for (std::uint32_t grain = 0; grain < 5; ++grain) {
        const QPointF offset(between(-0.5, 0.5, key, 10 + grain),
                             between(-0.5, 0.5, key, 20 + grain));
        painter.drawEllipse(centre + offset * radius, 1.9, 1.9);
    }
}

void paintTissueCell(QPainter& painter, int column, int row)
{
    const std::uint32_t key = tissueKey(column, row);
    const QPointF centre = tissueCentre(column, row);
    const double fade = between(0, 16, key, 1);
    const auto stained = [fade](double red, double green, double blue) {
        return QColor::fromRgbF((red + fade * 0.3) / 255, (green + fade) / 255,
                                (blue + fade * 0.6) / 255);
    };
    QRadialGradient plasma(centre, tissueSpacing * 0.62);
    plasma.setColorAt(0.0, stained(250, 226, 236));
    plasma.setColorAt(0.6, stained(246, 208, 224));
    plasma.setColorAt(1.0, stained(236, 178, 206));
    painter.setPen(QPen(QColor(206, 138, 176), 1.8));
    painter.setBrush(plasma);
    painter.drawPath(rounded(tissueCorners(column, row)));
    const QPointF shift(between(-6, 6, key, 2), between(-6, 6, key, 3));
    paintNucleus(painter, centre + shift, tissueSpacing * between(0.15, 0.22, key, 4), key);
}

} // namespace

void paintTissue(QPainter& painter)
{
    for (int row = -10; row <= 10; ++row) {
        for (int column = -6; column <= 8; ++column) {
            const QPointF offset = tissueCentre(column, row) - tissueMiddle;
            const double reach = std::hypot(offset.x() / 450, offset.y() / 410);
            if (reach < between(0.86, 1.0, tissueKey(column, row), 8))
                paintTissueCell(painter, column, row);
        }
    }
}

} // namespace zolens
