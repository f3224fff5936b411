#pragma once

#include <QPointF>
#include <QRectF>

class QPainter;

namespace zolens {

/// The engraved scale on the slide: 1 mm in 100 divisions of 10 micrometres, with longer lines at
/// every fifth and tenth division and a number at every tenth. Coordinates in micrometres.
class StageMicrometer final
{
public:
    static constexpr double pitch = 10.0;
    static constexpr int divisions = 100;
    static constexpr double lineWidth = 2.0;
    static constexpr double shortLine = 30.0;

    /// The left end of the base line, from which the lines go up.
    static QPointF origin();
    /// Lines and numbers; nothing else lies there, so that they can be read and measured.
    static QRectF area();
    static void paint(QPainter& painter);
};

} // namespace zolens
