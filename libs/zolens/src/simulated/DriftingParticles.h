#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>

#include <vector>

class QPainter;

namespace zolens {

/// One small thing that floats across the field. Micrometres from its centre.
struct Particle
{
    /// What painting it touches.
    QRectF bounds() const;
    void paint(QPainter& painter) const;

    QPointF position;
    double angle = 0.0; ///< Degrees.
    double length = 0.0;
    double width = 0.0;
    QColor color;
};

/// Where all of them are in that frame.
std::vector<Particle> particlesAt(quint64 frameNumber);

} // namespace zolens
