#pragma once

#include "DriftingParticles.h"
#include "MicroscopeScene.h"
#include "NoiseStrip.h"
#include "SimulatedSettings.h"

#include <QImage>

#include <atomic>
#include <memory>
#include <vector>

namespace zolens {

class ImagePipeline;

/// Makes the frames of the simulated microscope. A frame depends on the settings and its number
/// alone. What stands still is developed once for each change of the settings; a frame costs the
/// moving things and the noise. Used by one thread at a time.
class MicroscopeImager final
{
public:
    MicroscopeImager();
    ~MicroscopeImager();

    /// `frame` is a picture of Format_RGB32 in the size of the settings. False when cancelled, and
    /// then the frame is not complete.
    bool render(const SimulatedSettings& settings, quint64 frameNumber, QImage& frame);
    /// Cuts the present frame short and makes no more. May be called on any thread.
    void cancel() { cancelled = true; }
    /// The scene in that size, for metering.
    const MicroscopeScene& sceneOf(const QSize& size);

private:
    bool develop(const SimulatedSettings& settings);
    void moveParticles(quint64 frameNumber);
    void developPart(const QRect& pixels, const std::vector<Particle>& particles);
    void copyWithNoise(const SimulatedSettings& settings, quint64 frameNumber, QImage& frame);

    std::atomic<bool> cancelled{false};
    std::unique_ptr<MicroscopeScene> scene;
    std::unique_ptr<ImagePipeline> pipeline;
    SimulatedSettings developedFor;
    QImage developed; ///< With the particles of the last frame; null while there is none.
    std::vector<QRect> covered;
    NoiseStrip noise;
    std::vector<QRgb> mirroredRow;
};

} // namespace zolens
