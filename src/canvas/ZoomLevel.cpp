#include "canvas/ZoomLevel.h"

#include <algorithm>
#include <cmath>

namespace ZoomLevel {

namespace {

constexpr double lowest = 0.0;
constexpr double highest = 500.0;
constexpr double levelsPerDoubling = 50.0;

} // namespace

double toScale(double level)
{
    return std::exp2((level - actualSize) / levelsPerDoubling);
}

double ofScale(double scale)
{
    return levelsPerDoubling * std::log2(scale) + actualSize;
}

double clamped(double level)
{
    return std::clamp(level, lowest, highest);
}

double raised(double level, double levels)
{
    const double target = level + levels;
    return level < actualSize && target > actualSize ? actualSize : std::min(target, highest);
}

double lowered(double level, double levels)
{
    const double target = level - levels;
    return level > actualSize && target < actualSize ? actualSize : std::max(target, lowest);
}

} // namespace ZoomLevel
