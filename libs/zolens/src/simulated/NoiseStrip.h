#pragma once

#include "SimulatedSettings.h"

#include <QtGlobal>

#include <vector>

namespace zolens {

/// The grain of the sensor: a long strip of noise pixels, of which each row of each frame takes a
/// piece from another place. The spread is the same in bright and dark parts, since that of light
/// grows with its square root, which the tone curve takes back.
class NoiseStrip final
{
public:
    /// Makes the strip anew only when the settings ask for other noise.
    void prepare(const SimulatedSettings& settings);
    /// The four bytes a pixel of one row. The fourth holds the unused byte of a pixel at 255.
    const qint8* row(quint64 frameNumber, int y) const;

    /// Spread of the noise in values of the picture.
    static double spread(const SimulatedSettings& settings);

private:
    void fill();

    double preparedSpread = -1.0;
    bool grey = false;
    std::vector<qint8> bytes;
};

} // namespace zolens
