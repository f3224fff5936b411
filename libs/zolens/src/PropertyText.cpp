#include "PropertyText.h"

#include <cmath>

namespace zolens {

namespace {

constexpr double thousand = 1000.0;

/// Three digits, the last ones after the point.
QString threeDigits(double value)
{
    if (value < 10)
        return QString::number(value, 'f', 2);
    return QString::number(value, 'f', value < 100 ? 1 : 0);
}

} // namespace

QString PropertyText::text(tagCMProperty id, double value)
{
    switch (id) {
    case CMProperty_ExposureTime:
        return exposureTime(value);
    case CMProperty_Gain:
        return tr("x %1").arg(value / 100, 0, 'f', 1);
    case CMProperty_ColorTemperature:
        return tr("%1 K").arg(value, 0, 'f', 0);
    default:
        return number(value);
    }
}

QString PropertyText::number(double value)
{
    return QString::number(value, 'f', 0);
}

QString PropertyText::exposureTime(double microseconds)
{
    const double rounded = std::round(microseconds);
    if (rounded < thousand)
        return tr("%1 µs").arg(rounded);
    if (rounded < thousand * thousand)
        return tr("%1 ms").arg(threeDigits(rounded / thousand));
    return tr("%1 s").arg(threeDigits(rounded / thousand / thousand));
}

} // namespace zolens
