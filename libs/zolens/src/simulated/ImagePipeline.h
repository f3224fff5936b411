#pragma once

#include "PixelLoops.h"
#include "SimulatedSettings.h"

#include <QImage>

namespace zolens {

/// Turns the light of the scene into the picture of the camera: exposure, gain and white balance,
/// tone, colour, detail, transfer format. Without noise, flicker and turns, which are the frame's.
class ImagePipeline final
{
public:
    explicit ImagePipeline(const SimulatedSettings& settings);

    /// Works in place on a whole scene, or on a part of it that begins on a block of 8 by 8.
    void develop(QImage& image) const;

private:
    PixelLoops::Tables tables;
    PixelLoops::Matrix matrix{};
    bool changesColor = false;
    bool negative = false;
    int detail = 0; ///< As PixelLoops::adjustDetail takes it.
    FrameFormat format = FrameFormat::Rgb;
};

/// What a pixel reacts to: the light that it gets, per channel, in units of its full well.
double exposureFactor(const SimulatedSettings& settings);

} // namespace zolens
