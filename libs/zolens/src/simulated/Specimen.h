#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>

#include <vector>

class QPainter;

namespace zolens {

/// The objects on the slide. Coordinates in micrometres from the centre of the field; the painter
/// multiplies, as everything on a bright field takes light away.
class Specimen final
{
public:
    struct Patch
    {
        QRectF area;
        QRgb color;
    };

    static constexpr double beadDiameter = 100.0;
    static constexpr double fibreWidth = 20.0;

    static QPointF beadCentre();
    /// The outer edge of the plant cell.
    static QRectF cell();
    /// Colour filters, for white balance and colours.
    static const std::vector<Patch>& patches();

    static void paint(QPainter& painter);
};

} // namespace zolens
