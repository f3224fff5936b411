#pragma once

#include <QImage>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QTransform>

#include <vector>

namespace zolens {

struct Particle;

/// What the sensor looks at: the slide in even white light with the fall-off towards the edges, at
/// one resolution. Values are those of a picture of gamma 2.2: 255 is the full light of the lamp.
/// Objects are placed in micrometres from the centre; the width of the field is always the same,
/// so a picture of another size shows the same things larger or smaller.
class MicroscopeScene final
{
public:
    /// Micrometres across the picture.
    static constexpr double fieldWidth = 1920.0;

    explicit MicroscopeScene(const QSize& size);

    QSize size() const { return picture.size(); }
    const QImage& image() const { return picture; }
    /// A small picture of the whole field, for metering.
    const QImage& meter() const { return small; }

    /// From micrometres to pixels.
    QTransform toPixels() const;
    /// The pixels that a thing of that extent touches, in whole blocks of 8 by 8.
    QRect blocksAround(const QRectF& micrometres) const;
    /// That part of the picture with the particles on it.
    QImage part(const QRect& pixels, const std::vector<Particle>& particles) const;

private:
    QImage picture;
    QImage small;
};

} // namespace zolens
