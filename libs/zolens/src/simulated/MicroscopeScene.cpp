#include "MicroscopeScene.h"

#include "DriftingParticles.h"
#include "PixelLoops.h"
#include "Specimen.h"
#include "StageMicrometer.h"

#include <QPainter>

namespace zolens {

namespace {

const QColor brightField(240, 240, 240);
constexpr int block = 8;
constexpr int meterWidth = 192;
constexpr int lensSoftness = -160; ///< As PixelLoops::adjustDetail takes it.

int roundedDown(int value)
{
    return value / block * block;
}

QImage paintedSlide(const QSize& size, const QTransform& toPixels)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(brightField);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(toPixels);
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    Specimen::paint(painter);
    StageMicrometer::paint(painter);
    return image;
}

QTransform scaledToWidth(const QSize& size)
{
    const double scale = size.width() / MicroscopeScene::fieldWidth;
    return {scale, 0, 0, scale, size.width() / 2.0, size.height() / 2.0};
}

} // namespace

MicroscopeScene::MicroscopeScene(const QSize& size)
    : picture(paintedSlide(size, scaledToWidth(size)))
{
    PixelLoops::adjustDetail(picture, lensSoftness);
    PixelLoops::darkenEdges(picture);
    small = picture.scaledToWidth(meterWidth, Qt::SmoothTransformation);
}

QTransform MicroscopeScene::toPixels() const
{
    return scaledToWidth(size());
}

QRect MicroscopeScene::blocksAround(const QRectF& micrometres) const
{
    const QRect touched = toPixels().mapRect(micrometres).toAlignedRect() & picture.rect();
    if (touched.isEmpty())
        return {};
    const QPoint from(roundedDown(touched.left()), roundedDown(touched.top()));
    const QPoint to(roundedDown(touched.right()) + block - 1,
                    roundedDown(touched.bottom()) + block - 1);
    return QRect(from, to) & picture.rect();
}

QImage MicroscopeScene::part(const QRect& pixels, const std::vector<Particle>& particles) const
{
    QImage image = picture.copy(pixels);
    const QTransform transform =
        toPixels() * QTransform::fromTranslate(-pixels.left(), -pixels.top());
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(transform);
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    for (const Particle& particle : particles) {
        if (transform.mapRect(particle.bounds()).intersects(QRectF(image.rect())))
            particle.paint(painter);
    }
    return image;
}

} // namespace zolens
