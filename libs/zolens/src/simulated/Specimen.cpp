#include "Specimen.h"

#include "Diatoms.h"
#include "Outlines.h"
#include "StageMicrometer.h"
#include "Tissue.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <cmath>

namespace zolens {

namespace {

constexpr double goldenSection = 0.61803398875; ///< Steps of it spread evenly around.

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
        const double along = 2 * M_PI * goldenSection * i;
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
    for (const Specimen::Patch& patch : Specimen::patches())
        painter.fillRect(patch.area, QColor(patch.color));
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
        if (StageMicrometer::area().contains(centre))
            continue;
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
    paintCentricDiatom(painter, {60, 60}, 105);
    paintPennateDiatom(painter, {520, 250}, -24, 330);
    paintPennateDiatom(painter, {730, 80}, 62, 210);
    paintPennateDiatom(painter, {250, 330}, 15, 170);
    paintCell(painter);
    paintFibre(painter);
    paintBead(painter);
    paintPatches(painter);
}

} // namespace zolens
