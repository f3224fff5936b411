#include "PictureLook.h"

#include <libyuv.h>

#include <QImage>

#include <algorithm>
#include <cstring>
#include <vector>

namespace zolens {
namespace {

constexpr int channels = 4;
/// The limit of smoothing at the strongest de-noise.
constexpr int strongestLimit = 32;
/// Neighbours weigh a quarter each, the pixel itself a half.
constexpr int weightShift = 2;

void smoothBytes(const uchar* before, const uchar* middle, const uchar* after, uchar* to,
                 std::size_t count, int limit)
{
    for (std::size_t i = 0; i < count; ++i) {
        const int step = (before[i] + after[i] - 2 * middle[i]) >> weightShift;
        to[i] = uchar(middle[i] + std::clamp(step, -limit, limit));
    }
}

void smoothRow(uchar* line, std::vector<uchar>* copy, int limit)
{
    std::memcpy(copy->data(), line, copy->size());
    const uchar* from = copy->data();
    if (copy->size() > 2 * channels)
        smoothBytes(from, from + channels, from + 2 * channels, line + channels,
                    copy->size() - 2 * channels, limit);
}

void invert(QImage* picture)
{
    constexpr QRgb colors = 0x00ffffffU;
    for (int y = 0; y < picture->height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(picture->scanLine(y));
        std::for_each(line, line + picture->width(), [](QRgb& pixel) { pixel ^= colors; });
    }
}

} // namespace

void smooth(QImage* picture, int limit)
{
    const std::size_t length = std::size_t(picture->width()) * channels;
    std::vector<uchar> copy(length);
    for (int y = 0; y < picture->height(); ++y)
        smoothRow(picture->scanLine(y), &copy, limit);
    std::vector<uchar> above(picture->constScanLine(0), picture->constScanLine(0) + length);
    for (int y = 1; y + 1 < picture->height(); ++y) {
        uchar* line = picture->scanLine(y);
        std::memcpy(copy.data(), line, length);
        smoothBytes(above.data(), copy.data(), picture->constScanLine(y + 1), line, length, limit);
        above.swap(copy);
    }
}

PictureLook& PictureLook::operator=(const PictureLook& other)
{
    flip = other.flip.load();
    mirror = other.mirror.load();
    colorMode = other.colorMode.load();
    denoise = other.denoise.load();
    return *this;
}

void PictureLook::apply(QImage* picture) const
{
    const int strength = denoise;
    if (strength > 0)
        smooth(picture, std::max(1, strength * strongestLimit / strongestDenoise));
    const int mode = colorMode;
    if (mode == Monochrome)
        libyuv::ARGBGray(picture->bits(), picture->bytesPerLine(), 0, 0, picture->width(),
                         picture->height());
    else if (mode == Negative)
        invert(picture);
}

} // namespace zolens
