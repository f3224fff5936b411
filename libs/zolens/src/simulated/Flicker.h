#pragma once

#include "SimulatedSettings.h"

#include <QtGlobal>

namespace zolens {

/// The lamp follows the mains of 50 Hz: it is brightest a hundred times a second. A sensor that
/// reads row by row sees that as bands, unless the exposure lasts whole periods of it.
class Flicker final
{
public:
    Flicker(const SimulatedSettings& settings, quint64 frameNumber);

    /// Factor on the values of that row of the picture, times 256.
    int scale(int row) const;

private:
    double depth = 0.0;
    double phase = 0.0; ///< Of the first row, in periods.
    double periodsPerRow = 0.0;
};

} // namespace zolens
