#include "PropertyTable.h"

#include <algorithm>
#include <cmath>

namespace zolens {

const std::vector<PropertyRange>& propertyTable()
{
    // Exposure time in microseconds, gains in hundredths, hue in degrees, temperature in kelvin.
    static const std::vector<PropertyRange> table{
        {CMProperty_Brightness, -100, 100, 1, 0},
        {CMProperty_Contrast, 0, 200, 1, 100},
        {CMProperty_Hue, -180, 180, 1, 0},
        {CMProperty_Saturation, 0, 200, 1, 100},
        {CMProperty_Gamma, 40, 250, 1, 100},
        {CMProperty_Sharpness, 0, 100, 1, 20},
        {CMProperty_Gain, 100, 1600, 1, 100},
        {CMProperty_ExposureTarget, 20, 235, 1, 205},
        {CMProperty_ExposureTime, 50, 250000, 1, 10000},
        {CMProperty_RedGain, 50, 400, 1, 100},
        {CMProperty_GreenGain, 50, 400, 1, 100},
        {CMProperty_BlueGain, 50, 400, 1, 100},
        {CMProperty_ColorTemperature, 2000, 10000, 1, 5000},
        {CMProperty_ColorMode, 0, 2, 1, 0},
        {CMProperty_Denoise, 0, 100, 1, 0},
    };
    return table;
}

const PropertyRange* findProperty(tagCMProperty id)
{
    const auto& table = propertyTable();
    const auto found = std::find_if(table.begin(), table.end(),
                                    [id](const PropertyRange& range) { return range.id == id; });
    return found == table.end() ? nullptr : &*found;
}

double nearestValue(const PropertyRange& range, double value)
{
    const double held = std::clamp(value, range.lowest, range.highest);
    return range.lowest + std::round((held - range.lowest) / range.step) * range.step;
}

} // namespace zolens
