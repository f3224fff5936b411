#include "MosaicLoops.h"

#include <algorithm>
#include <cstdint>

namespace zolens {
namespace {

// Short integers keep eight pixels in a register; no sum below exceeds them.
using Sum = std::int16_t;

template <int divisorShift>
uchar rounded(Sum sum)
{
    constexpr int half = 1 << (divisorShift - 1);
    const Sum value = Sum(Sum(sum + half) >> divisorShift);
    return uchar(std::clamp<Sum>(value, 0, 255));
}

uchar choose(uchar mask, uchar ifSet, uchar ifClear)
{
    return uchar((mask & ifSet) | (~mask & ifClear));
}

/// Plain pointers that are known to lie apart: the condition of using whole registers.
void interpolate(const uchar* above2, const uchar* above, const uchar* own, const uchar* below,
                 const uchar* below2, const uchar* greens, int width, uchar* __restrict ownColor,
                 uchar* __restrict green, uchar* __restrict other)
{
    for (int x = 0; x < width; ++x) {
        const Sum center = own[x];
        const Sum beside = Sum(own[x - 1] + own[x + 1]);
        const Sum across = Sum(above[x] + below[x]);
        const Sum corners = Sum(above[x - 1] + above[x + 1] + below[x - 1] + below[x + 1]);
        const Sum beside2 = Sum(own[x - 2] + own[x + 2]);
        const Sum across2 = Sum(above2[x] + below2[x]);
        const Sum around2 = Sum(beside2 + across2);
        const uchar greenHere = rounded<3>(Sum(4 * center + 2 * (beside + across) - around2));
        const uchar otherHere = rounded<4>(Sum(12 * center + 4 * corners - 3 * around2));
        const Sum atGreen = Sum(10 * center - 2 * corners);
        const uchar ownAtGreen = rounded<4>(Sum(atGreen + 8 * beside - 2 * beside2 + across2));
        const uchar otherAtGreen = rounded<4>(Sum(atGreen + 8 * across - 2 * across2 + beside2));
        const uchar mask = greens[x];
        ownColor[x] = choose(mask, ownAtGreen, own[x]);
        green[x] = choose(mask, own[x], greenHere);
        other[x] = choose(mask, otherAtGreen, otherHere);
    }
}

} // namespace

void interpolateColors(const MosaicRows& rows, const uchar* greens, int width,
                       const MosaicColors& to)
{
    interpolate(rows.above2, rows.above, rows.own, rows.below, rows.below2, greens, width, to.own,
                to.green, to.other);
}

} // namespace zolens
