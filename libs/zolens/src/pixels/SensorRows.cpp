#include "SensorRows.h"

#include <libyuv.h>

#include <algorithm>
#include <vector>

namespace zolens {
namespace {

using libyuv::YuvConstants;
using Layout = SensorFormat::Layout;
using Colors = SensorFormat::Colors;

/// A row of luma and colour differences, with all of them for every pixel.
struct YuvRow
{
    explicit YuvRow(int width)
        : luma(std::size_t(width)),
          blue(std::size_t(width)),
          red(std::size_t(width))
    {
    }

    void convert(uint8_t* to, const YuvConstants* matrix, int width) const
    {
        libyuv::I444ToARGBMatrix(luma.data(), width, blue.data(), width, red.data(), width, to,
                                 width * 4, matrix, width, 1);
    }

    std::vector<uint8_t> luma, blue, red;
};

const uint8_t* rowAt(const SourceRows& from, int y)
{
    return from.plane[0] + ptrdiff_t(y) * from.stride[0];
}

uint8_t* rowAt(const TargetRows& to, int y)
{
    return to.pixels + ptrdiff_t(y) * to.stride;
}

/// Three samples a pixel, luma first or second.
template <bool lumaFirst>
void threeSamples(const SourceRows& from, const TargetRows& to, const YuvConstants* matrix,
                  int width, int height)
{
    YuvRow row(width);
    uint8_t* const first = lumaFirst ? row.luma.data() : row.blue.data();
    uint8_t* const second = lumaFirst ? row.blue.data() : row.luma.data();
    for (int y = 0; y < height; ++y) {
        libyuv::SplitRGBPlane(rowAt(from, y), 3 * width, first, width, second, width,
                              row.red.data(), width, width, 1);
        row.convert(rowAt(to, y), matrix, width);
    }
}

/// Six samples for four pixels: U Y Y V Y Y.
void sixSamples(const SourceRows& from, const TargetRows& to, const YuvConstants* matrix, int width,
                int height)
{
    constexpr int lumaPlaces[] = {1, 2, 4, 5};
    const int groups = (width + 3) / 4;
    YuvRow row(4 * groups);
    for (int y = 0; y < height; ++y) {
        const uint8_t* group = rowAt(from, y);
        for (int x = 0; x < 4 * groups; x += 4, group += 6) {
            for (int i = 0; i < 4; ++i)
                row.luma[std::size_t(x + i)] = group[lumaPlaces[i]];
            std::fill_n(row.blue.begin() + x, 4, group[0]);
            std::fill_n(row.red.begin() + x, 4, group[3]);
        }
        row.convert(rowAt(to, y), matrix, width);
    }
}

AVPixelFormat commonFormat(Layout layout)
{
    switch (layout) {
    case Layout::Mono:
        return AV_PIX_FMT_GRAY8;
    case Layout::Rgb:
        return AV_PIX_FMT_RGB24;
    case Layout::Bgr:
        return AV_PIX_FMT_BGR24;
    case Layout::Rgba:
        return AV_PIX_FMT_RGBA;
    case Layout::Bgra:
        return AV_PIX_FMT_BGRA;
    case Layout::Yuyv:
        return AV_PIX_FMT_YUYV422;
    case Layout::Uyvy:
        return AV_PIX_FMT_UYVY422;
    default:
        return AV_PIX_FMT_NONE;
    }
}

} // namespace

RowConversion::Function rowFunction(SensorFormat::Layout layout)
{
    if (layout == Layout::Uyv)
        return threeSamples<false>;
    if (layout == Layout::Yuv)
        return threeSamples<true>;
    if (layout == Layout::Uyyvyy)
        return sixSamples;
    return findRowConversion(commonFormat(layout))->function;
}

const libyuv::YuvConstants* matrixFor(SensorFormat::Colors colors)
{
    switch (colors) {
    case Colors::Limited601:
        return &libyuv::kYuvI601Constants;
    case Colors::Limited709:
        return &libyuv::kYuvH709Constants;
    default:
        return &libyuv::kYuvJPEGConstants;
    }
}

} // namespace zolens
