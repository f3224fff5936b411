#pragma once

namespace zolens {

/// The strength of light in the three channels, or a factor for each.
struct LightColor
{
    double red = 1.0;
    double green = 1.0;
    double blue = 1.0;
};

/// The light of a glowing body of that temperature in kelvin, as the sensor sees it; green is 1.
LightColor lightOfTemperature(double kelvin);

/// The temperature whose light has that relation of red to blue.
double temperatureOfLight(const LightColor& light);

/// The lamp of the simulated microscope.
LightColor lampLight();

} // namespace zolens
