#pragma once

#include <QColor>

#include <cmath>

/// Colours by the recommendations' own formulas.

struct Yuv
{
    int y, u, v;
};

/// The luma weights of red and blue, of the recommendations' own texts.
struct Weights
{
    double red, blue;
};

constexpr Weights bt601 = {0.299, 0.114};
constexpr Weights bt709 = {0.2126, 0.0722};
constexpr Weights bt2020 = {0.2627, 0.0593};

inline QRgb expectedColor(const Yuv& sample, const Weights& weights, bool fullRange)
{
    const double luma = fullRange ? sample.y / 255.0 : (sample.y - 16) / 219.0;
    const double scale = fullRange ? 255.0 : 224.0;
    const double cb = (sample.u - 128) / scale;
    const double cr = (sample.v - 128) / scale;
    const double red = luma + 2.0 * (1.0 - weights.red) * cr;
    const double blue = luma + 2.0 * (1.0 - weights.blue) * cb;
    const double green =
        (luma - weights.red * red - weights.blue * blue) / (1.0 - weights.red - weights.blue);
    const auto byte = [](double value) {
        return int(std::lround(qBound(0.0, value, 1.0) * 255.0));
    };
    return qRgb(byte(red), byte(green), byte(blue));
}

/// The factor of the blue difference ends at 2.0 in the conversion; what that may cost.
inline int blueTolerance(const Yuv& sample, const Weights& weights, bool fullRange)
{
    const double factor = 2.0 * (1.0 - weights.blue) * (fullRange ? 1.0 : 255.0 / 224.0);
    return 3 + int(std::ceil(qMax(0.0, factor - 2.0) * qAbs(sample.u - 128)));
}

inline bool isNear(QRgb actual, QRgb expected, int tolerance, int blueTolerance = 0)
{
    return qAbs(qRed(actual) - qRed(expected)) <= tolerance &&
           qAbs(qGreen(actual) - qGreen(expected)) <= tolerance &&
           qAbs(qBlue(actual) - qBlue(expected)) <= qMax(tolerance, blueTolerance);
}
