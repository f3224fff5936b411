#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

/// The ratio of the relative luminances of two opaque colours, from 1 to 21, as WCAG 2 defines it.
inline double contrast(const QColor& a, const QColor& b)
{
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    const auto luminance = [&](const QColor& c) {
        return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
    };
    const double first = luminance(a) + 0.05, second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}
