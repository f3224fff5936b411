#pragma once

#include <QtGlobal>

namespace zolens {

/// Rows of a mosaic from two above to two below, each with two samples beyond either end.
struct MosaicRows
{
    const uchar* above2;
    const uchar* above;
    const uchar* own;
    const uchar* below;
    const uchar* below2;
};

/// The colours of a row: green, the other colour of that row, the colour of the rows beside.
struct MosaicColors
{
    uchar* own;
    uchar* green;
    uchar* other;
};

/// `greens` has all bits of a pixel set that is green, and none of others.
void interpolateColors(const MosaicRows& rows, const uchar* greens, int width,
                       const MosaicColors& to);

} // namespace zolens
