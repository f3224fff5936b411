#include "LightColor.h"

#include <cmath>

namespace zolens {

namespace {

// Powers of the temperature follow a glowing body closely enough from 2000 to 10000 K.
constexpr double whiteTemperature = 5500.0;
constexpr double redPower = -0.55;
constexpr double bluePower = 0.85;
constexpr double lampTemperature = 5000.0;

} // namespace

LightColor lightOfTemperature(double kelvin)
{
    const double relative = kelvin / whiteTemperature;
    return {std::pow(relative, redPower), 1.0, std::pow(relative, bluePower)};
}

double temperatureOfLight(const LightColor& light)
{
    return whiteTemperature * std::pow(light.red / light.blue, 1.0 / (redPower - bluePower));
}

LightColor lampLight()
{
    return lightOfTemperature(lampTemperature);
}

} // namespace zolens
