#pragma once

#include "FeatureAccess.h"
#include "device/DeviceControls.h"

#include <optional>
#include <vector>

namespace zolens {

/// How a property of a camera stands among its features. The names are those of the GenICam
/// standard feature naming convention, of today and of its beginnings.
struct FeatureMapping
{
    /// Of a feature's numbers. Gains in decibels become hundredths of a factor; other numbers are
    /// multiplied.
    struct Scale
    {
        bool decibel = false;
        double factor = 1.0;

        double toProperty(double number) const;
        double toFeature(double value) const;
    };

    tagCMProperty property = CMProperty_Brightness;
    const char* feature = "";
    const char* selector =
        nullptr; ///< Which has to stand at `entry` first; null when there is none.
    const char* entry = nullptr;
    FeatureRange limits; ///< Of the feature.
    Scale scale;
    DeviceControls::Range range = {}; ///< Of the property; the standard is the value in force.

    /// Nothing when the camera does not tell, or what it tells is no sensible number.
    std::optional<double> read(FeatureAccess& features) const;
    /// Holds the value at the ends and steps of the range. False when the camera refuses.
    bool write(FeatureAccess& features, double value) const;

private:
    bool select(FeatureAccess& features) const;
};

/// The properties that the camera has, each once.
std::vector<FeatureMapping> findMappings(FeatureAccess& features);

} // namespace zolens
