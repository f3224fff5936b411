#include "SimulatedSettings.h"

#include "PropertyTable.h"

#include <algorithm>
#include <tuple>

namespace zolens {

namespace {

constexpr double fastest = 1.0 / 60;
constexpr double bytesPerSecond = 400e6;

double bytesPerPixel(FrameFormat format)
{
    switch (format) {
    case FrameFormat::Rgb:
        return 3.0;
    case FrameFormat::Yuv:
        return 2.0;
    case FrameFormat::Mjpeg:
        break;
    }
    return 1.5;
}

auto asTuple(const SimulatedSettings& settings)
{
    return std::tuple(settings.size.width(), settings.size.height(), settings.format, settings.flip,
                      settings.mirror, settings.powerFrequency);
}

} // namespace

SimulatedSettings::SimulatedSettings()
{
    for (const PropertyRange& range : propertyTable())
        setValue(range.id, range.standard);
}

bool operator==(const SimulatedSettings& a, const SimulatedSettings& b)
{
    return asTuple(a) == asTuple(b) && a.values == b.values;
}

double frameInterval(const SimulatedSettings& settings)
{
    const double pixels = double{1} * settings.size.width() * settings.size.height();
    const double transfer = pixels * bytesPerPixel(settings.format) / bytesPerSecond;
    return std::max({fastest, transfer, settings.value(CMProperty_ExposureTime) * 1e-6});
}

} // namespace zolens
