#pragma once

#include <QImage>

#include <algorithm>

namespace zolens {

inline int inByte(int value)
{
    return std::clamp(value, 0, 255);
}

inline QRgb* row(QImage& image, int y)
{
    return reinterpret_cast<QRgb*>(image.scanLine(y));
}

inline const QRgb* row(const QImage& image, int y)
{
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

/// Weighted as meanLuminance, times 1024.
inline int lightness(QRgb pixel)
{
    return 306 * qRed(pixel) + 601 * qGreen(pixel) + 117 * qBlue(pixel);
}

} // namespace zolens
