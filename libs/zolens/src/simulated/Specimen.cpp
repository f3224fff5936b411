#include "Specimen.h"

#include "Hash.h"
#include "StageMicrometer.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <cmath>

namespace zolens {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double goldenSection = 0.61803398875; ///< Steps of it spread evenly around.

double between(double low, double high, std::uint32_t key, std::uint32_t salt)
{
    return low + (high - low) * unitHashOf(key, salt);
}

/// A round outline that no ruler made.
QPainterPath blob(const QPointF& centre, double radius, double unevenness, std::uint32_t key)
{
    constexpr int corners = 9;
    QPolygonF points;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * pi * i / corners;
        const double reach = radius * (1 + unevenness * between(-1, 1, key, 40 + i));
        points << centre + reach * QPointF(std::cos(angle), std::sin(angle));
    }
    QPainterPath path((points.last() + points.first()) / 2);
    for (int i = 0; i < corners; ++i) {
        path.quadTo(points[i], (points[i] + points[(i + 1) % corners]) / 2);
    }
    return path;
}

constexpr double tissueSpacing = 60.0;
const QPointF tissueMiddle(-700, 260);

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

QPainterPath rounded(const QPolygonF& corners)
{
    constexpr double straight = 0.28; ///< Of a side, from its corner, where the rounding ends.
    QPainterPath path;
    for (int i = 0; i < corners.size(); ++i) {
        const QPointF corner = corners[i];
        const QPointF before = corners[(i + corners.size() - 1) % corners.size()];
        const QPointF after = corners[(i + 1) % corners.size()];
        const QPointF from = corner + (before - corner) * straight;
        if (i == 0) {
            path.moveTo(from);
        }
        path.lineTo(from);
        path.quadTo(corner, corner + (after - corner) * straight);
    }
    path.closeSubpath();
    return path;
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

/// A layer of stained cells with an uneven edge, which goes on beyond the field.
void paintTissue(QPainter& painter)
{
    for (int row = -10; row <= 10; ++row) {
        for (int column = -6; column <= 8; ++column) {
            const QPointF offset = tissueCentre(column, row) - tissueMiddle;
            const double reach = std::hypot(offset.x() / 450, offset.y() / 410);
            if (reach < between(0.86, 1.0, tissueKey(column, row), 8)) {
                paintTissueCell(painter, column, row);
            }
        }
    }
}

/// A round diatom with chambers along rays and rings.
void paintCentricDiatom(QPainter& painter)
{
    const QPointF centre(60, 60);
    constexpr double radius = 105.0;
    QRadialGradient body(centre, radius);
    body.setColorAt(0.0, QColor(238, 226, 178));
    body.setColorAt(0.75, QColor(222, 204, 140));
    body.setColorAt(0.93, QColor(176, 150, 84));
    body.setColorAt(1.0, QColor(96, 78, 44));
    painter.setPen(QPen(QColor(70, 58, 36), 3));
    painter.setBrush(body);
    painter.drawEllipse(centre, radius, radius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(176, 156, 104));
    for (int ring = 1; ring <= 9; ++ring) {
        const int chambers = 6 * ring;
        for (int i = 0; i < chambers; ++i) {
            const double angle = 2 * pi * (i + 0.5 * (ring & 1)) / chambers;
            painter.drawEllipse(centre + 9.6 * ring * QPointF(std::cos(angle), std::sin(angle)),
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

/// A long diatom with fine ribs and a seam.
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
    painter.setPen(QPen(QColor(178, 164, 104), 1.5));
    for (double x = -length / 2; x < length / 2; x += 5) {
        painter.drawLine(QPointF(x, -width), QPointF(x, -3));
        painter.drawLine(QPointF(x, 3), QPointF(x, width));
    }
    painter.setPen(QPen(QColor(120, 104, 58), 1.6));
    painter.drawLine(QPointF(-length / 2, 0), QPointF(length / 2, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(206, 168, 70));
    painter.drawEllipse(QPointF(-length * 0.17, 0), length * 0.11, width * 0.24);
    painter.drawEllipse(QPointF(length * 0.17, 0), length * 0.11, width * 0.24);
    painter.restore();
}

void paintCell(QPainter& painter)
{
    const QRectF area = Specimen::cell();
    constexpr double wall = 5.0;
    painter.setPen(QPen(QColor(66, 108, 58), wall, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.setBrush(QColor(222, 240, 206));
    painter.drawRect(area.adjusted(wall / 2, wall / 2, -wall / 2, -wall / 2));
    painter.setPen(QPen(QColor(104, 150, 76), 1.2));
    painter.setBrush(QColor(140, 188, 96));
    for (std::uint32_t i = 0; i < 26; ++i) {
        const double along = 2 * pi * goldenSection * i;
        const double reach = between(0.5, 0.96, i, 71);
        const QPointF place(std::cos(along) * (area.width() / 2 - 16) * reach,
                            std::sin(along) * (area.height() / 2 - 16) * reach);
        painter.drawEllipse(area.center() + place, 8.5, 6.5);
    }
    painter.setPen(QPen(QColor(150, 148, 120), 1.2));
    painter.setBrush(QColor(206, 204, 176));
    painter.drawEllipse(area.center() + QPointF(22, -8), 17, 15);
}

void paintFibre(QPainter& painter)
{
    QPainterPath path(QPointF(1000, -240));
    path.cubicTo(700, -300, 560, -60, 420, -150);
    path.cubicTo(300, -230, 200, -180, 150, -225);
    const auto stroke = [&painter, &path](const QColor& color, double width) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.drawPath(path);
        painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    };
    stroke(QColor(58, 92, 140), Specimen::fibreWidth);
    stroke(QColor(140, 182, 222), Specimen::fibreWidth - 5);
    stroke(QColor(188, 216, 238), Specimen::fibreWidth - 12);
}

void paintBead(QPainter& painter)
{
    constexpr double radius = Specimen::beadDiameter / 2;
    const QPointF centre = Specimen::beadCentre();
    QRadialGradient glass(centre, radius, centre);
    glass.setColorAt(0.0, QColor(255, 255, 255));
    glass.setColorAt(0.45, QColor(238, 240, 242));
    glass.setColorAt(0.72, QColor(170, 174, 180));
    glass.setColorAt(0.88, QColor(74, 78, 86));
    glass.setColorAt(1.0, QColor(30, 32, 38));
    painter.setPen(Qt::NoPen);
    painter.setBrush(glass);
    painter.drawEllipse(centre, radius, radius);
}

void paintPatches(QPainter& painter)
{
    painter.setPen(Qt::NoPen);
    for (const Specimen::Patch& patch : Specimen::patches()) {
        painter.fillRect(patch.area, QColor(patch.color));
    }
}

/// Dust far from the focus: wide, faint and soft.
void paintDust(QPainter& painter)
{
    painter.setPen(Qt::NoPen);
    for (std::uint32_t i = 0; i < 14; ++i) {
        const QPointF centre(between(-960, 960, i, 90), between(-720, 720, i, 91));
        const double radius = between(18, 60, i, 92);
        QRadialGradient haze(centre, radius);
        haze.setColorAt(0.0, QColor(246, 246, 246));
        haze.setColorAt(0.7, QColor(241, 241, 241));
        haze.setColorAt(0.85, QColor(249, 249, 249));
        haze.setColorAt(1.0, Qt::white);
        painter.setBrush(haze);
        painter.drawEllipse(centre, radius, radius);
    }
}

void paintGrains(QPainter& painter)
{
    painter.setPen(Qt::NoPen);
    for (std::uint32_t i = 0; i < 110; ++i) {
        const QPointF centre(between(-960, 960, i, 95), between(-720, 720, i, 96));
        if (StageMicrometer::area().contains(centre)) {
            continue;
        }
        const double radius = between(0.8, 3.0, i, 97);
        const int shade = static_cast<int>(between(90, 200, i, 98));
        painter.setBrush(QColor(shade, shade, shade));
        painter.drawPath(blob(centre, radius, 0.3, i + 500));
    }
}

} // namespace

QPointF Specimen::beadCentre()
{
    return {320, 60};
}

QRectF Specimen::cell()
{
    return {-120, 250, 200, 120};
}

const std::vector<Specimen::Patch>& Specimen::patches()
{
    static const std::vector<Patch> list = [] {
        std::vector<Patch> made;
        const QRgb colors[] = {qRgb(214, 58, 52),   qRgb(64, 164, 74),  qRgb(52, 86, 190),
                               qRgb(238, 206, 62),  qRgb(190, 72, 160), qRgb(70, 178, 204),
                               qRgb(128, 128, 128), qRgb(64, 64, 64)};
        double x = 470;
        for (const QRgb color : colors) {
            made.push_back({QRectF(x, 420, 50, 50), color});
            x += 56;
        }
        return made;
    }();
    return list;
}

void Specimen::paint(QPainter& painter)
{
    paintDust(painter);
    paintGrains(painter);
    paintTissue(painter);
    paintCentricDiatom(painter);
    paintPennateDiatom(painter, {520, 250}, -24, 330);
    paintPennateDiatom(painter, {730, 80}, 62, 210);
    paintPennateDiatom(painter, {250, 330}, 15, 170);
    paintCell(painter);
    paintFibre(painter);
    paintBead(painter);
    paintPatches(painter);
}

} // namespace zolens
