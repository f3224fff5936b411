#pragma once

#include "zolens/CameraTypes.h"

#include <QSize>

#include <array>

namespace zolens {

/// Values of CWCamera::previewFormats.
enum class FrameFormat { Rgb = 0, Yuv = 5, Mjpeg = 19 };

/// Values of CWCamera::powerFrequency.
enum class PowerFrequency { Disabled = 0, Hz50 = 1, Hz60 = 2, Auto = 3 };

/// Everything that decides what a frame of the simulated microscope looks like, but its number.
struct SimulatedSettings
{
    SimulatedSettings();

    double value(tagCMProperty id) const { return values[static_cast<std::size_t>(id)]; }
    void setValue(tagCMProperty id, double value) { values[static_cast<std::size_t>(id)] = value; }

    QSize size{1920, 1080};
    FrameFormat format = FrameFormat::Rgb;
    bool flip = false;
    bool mirror = false;
    PowerFrequency powerFrequency = PowerFrequency::Auto;

private:
    friend bool operator==(const SimulatedSettings& a, const SimulatedSettings& b);
    std::array<double, 20> values{}; ///< By property.
};

inline bool operator!=(const SimulatedSettings& a, const SimulatedSettings& b)
{
    return !(a == b);
}

/// Seconds from one frame to the next: what the data rate of size and format allows, at most 60
/// frames a second, and never less than the exposure time.
double frameInterval(const SimulatedSettings& settings);

} // namespace zolens
