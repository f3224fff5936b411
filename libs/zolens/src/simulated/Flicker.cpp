#include "Flicker.h"

#include <cmath>

namespace zolens {

namespace {

constexpr double ripplesPerSecond = 100.0;
constexpr double ripple = 0.16; ///< Of the values, after the tone curve.
constexpr double readoutSeconds = 1.0 / 60;
constexpr double invisible = 1.0 / 512;

} // namespace

Flicker::Flicker(const SimulatedSettings& settings, quint64 frameNumber)
{
    const double periods = settings.value(CMProperty_ExposureTime) * 1e-6 * ripplesPerSecond;
    const double remainder = std::sin(M_PI * periods) / (M_PI * periods);
    depth = std::abs(ripple * remainder) < invisible ? 0.0 : ripple * remainder;
    const double start = static_cast<double>(frameNumber) * frameInterval(settings);
    phase = std::fmod(start * ripplesPerSecond, 1.0) + periods / 2;
    periodsPerRow = readoutSeconds * ripplesPerSecond / settings.size.height();
}

int Flicker::scale(int row) const
{
    const double wave = std::cos(2 * M_PI * (phase + row * periodsPerRow));
    return static_cast<int>(std::lround(256 * (1 + depth * wave)));
}

} // namespace zolens
