#include "MicroscopeImager.h"

#include "Flicker.h"
#include "ImagePipeline.h"

#include <algorithm>
#include <cstring>

namespace zolens {

namespace {

constexpr int block = 8; ///< Filters reach less far than this.
/// Pixels are developed in bands, which stay in the processor's cache and end soon when cancelled.
constexpr int bandHeight = 8 * block;

void paste(const QImage& from, const QPoint& place, const QRect& part, QImage& into)
{
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto* source = reinterpret_cast<const QRgb*>(from.constScanLine(y - place.y()));
        auto* target = reinterpret_cast<QRgb*>(into.scanLine(y));
        std::copy_n(source + part.left() - place.x(), part.width(), target + part.left());
    }
}

} // namespace

MicroscopeImager::MicroscopeImager() = default;

MicroscopeImager::~MicroscopeImager() = default;

const MicroscopeScene& MicroscopeImager::sceneOf(const QSize& size)
{
    if (!scene || scene->size() != size) {
        developed = QImage();
        scene = std::make_unique<MicroscopeScene>(size);
    }
    return *scene;
}

bool MicroscopeImager::render(const SimulatedSettings& settings, quint64 frameNumber, QImage& frame)
{
    sceneOf(settings.size);
    const bool isDeveloped = !developed.isNull() && settings == developedFor;
    if (!isDeveloped && !develop(settings))
        return false;
    moveParticles(frameNumber);
    noise.prepare(settings);
    copyWithNoise(settings, frameNumber, frame);
    return !cancelled;
}

bool MicroscopeImager::develop(const SimulatedSettings& settings)
{
    developedFor = settings;
    pipeline = std::make_unique<ImagePipeline>(settings);
    if (developed.isNull())
        developed = QImage(scene->size(), QImage::Format_RGB32);
    covered.clear();
    for (int y = 0; y < developed.height(); y += bandHeight) {
        if (cancelled) {
            developed = QImage();
            return false;
        }
        developPart(QRect(0, y, developed.width(), bandHeight) & developed.rect(), {});
    }
    return true;
}

void MicroscopeImager::moveParticles(quint64 frameNumber)
{
    const std::vector<Particle> particles = particlesAt(frameNumber);
    for (const QRect& pixels : covered)
        developPart(pixels, particles);
    covered.clear();
    for (const Particle& particle : particles) {
        const QRect pixels = scene->blocksAround(particle.bounds());
        if (!pixels.isEmpty()) {
            developPart(pixels, particles);
            covered.push_back(pixels);
        }
    }
}

void MicroscopeImager::developPart(const QRect& pixels, const std::vector<Particle>& particles)
{
    const QRect around = pixels.adjusted(-block, -block, block, block) & developed.rect();
    QImage part = scene->part(around, particles);
    pipeline->develop(part);
    paste(part, around.topLeft(), pixels, developed);
}

void MicroscopeImager::copyWithNoise(const SimulatedSettings& settings, quint64 frameNumber,
                                     QImage& frame)
{
    const Flicker flicker(settings, frameNumber);
    const int width = developed.width();
    const int height = developed.height();
    mirroredRow.resize(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        const int sourceY = settings.flip ? height - 1 - y : y;
        const uchar* source = developed.constScanLine(sourceY);
        if (settings.mirror) {
            PixelLoops::reverse(reinterpret_cast<const QRgb*>(source), mirroredRow.data(), width);
            source = reinterpret_cast<const uchar*>(mirroredRow.data());
        }
        PixelLoops::addNoise(source, flicker.scale(sourceY), noise.row(frameNumber, y),
                             frame.scanLine(y), width * 4);
    }
}

} // namespace zolens
