#include "Demosaic.h"

#include "MosaicLoops.h"

#include <libyuv.h>

#include <utility>

namespace zolens {
namespace {

constexpr uchar allBits = 0xff;

/// Steps of two beyond an edge meet the same colours as within.
int mirrored(int position, int length)
{
    if (length == 1)
        return 0;
    const int period = 2 * (length - 1);
    const int place = (position + period) % period;
    return place < length ? place : period - place;
}

} // namespace

void Demosaic::setWidth(int newWidth)
{
    if (newWidth == width)
        return;
    width = newWidth;
    const auto length = std::size_t(width);
    stride = length + 2 * margin;
    samples.assign(stride * rowCount, 0);
    greens.assign(length + 1, 0);
    for (std::size_t x = 0; x < greens.size(); x += 2)
        greens[x] = allBits;
    for (std::vector<uchar>& plane : colors)
        plane.resize(length);
}

void Demosaic::completeRow(int y)
{
    uchar* own = row(y);
    for (int i = 1; i <= reach; ++i) {
        own[-i] = own[mirrored(-i, width)];
        own[width - 1 + i] = own[mirrored(width - 1 + i, width)];
    }
}

void Demosaic::convertRow(int y, int height, MosaicRow kind, QRgb* to)
{
    const auto at = [&](int offset) { return row(mirrored(y + offset, height)); };
    const MosaicColors planes = {colors[0].data(), colors[1].data(), colors[2].data()};
    interpolateColors({at(-2), at(-1), at(0), at(1), at(2)},
                      greens.data() + (kind.startsGreen ? 0 : 1), width, planes);
    const auto [red, blue] =
        kind.red ? std::pair(planes.own, planes.other) : std::pair(planes.other, planes.own);
    libyuv::MergeARGBPlane(red, width, planes.green, width, blue, width, nullptr, 0,
                           reinterpret_cast<uint8_t*>(to), width * int(sizeof(QRgb)), width, 1);
}

} // namespace zolens
