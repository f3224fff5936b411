#pragma once

#include <algorithm>
#include <cmath>

// Sizes from damaged settings and from degenerate figures need not be numbers at all.

/// The value, or 0 for one that is not finite.
inline double finiteOrZero(double value)
{
    return std::isfinite(value) ? value : 0.0;
}

/// The whole pixels of a size, held inside what a size can sensibly be.
inline int wholePixels(double size)
{
    constexpr double largest = 1e6;
    return static_cast<int>(std::clamp(finiteOrZero(size), -largest, largest));
}
