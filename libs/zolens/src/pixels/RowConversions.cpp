#include "RowConversions.h"

#include <libyuv.h>

#include <QImage>

#include <algorithm>
#include <iterator>
#include <vector>

namespace zolens {
namespace {

using libyuv::YuvConstants;

using Planar8 = int (*)(const uint8_t*, int, const uint8_t*, int, const uint8_t*, int, uint8_t*,
                        int, const YuvConstants*, int, int);
using Planar16 = int (*)(const uint16_t*, int, const uint16_t*, int, const uint16_t*, int, uint8_t*,
                         int, const YuvConstants*, int, int);
using SemiPlanar8 = int (*)(const uint8_t*, int, const uint8_t*, int, uint8_t*, int,
                            const YuvConstants*, int, int);
using Packed = int (*)(const uint8_t*, int, uint8_t*, int, int, int);

template <Planar8 convert>
void planar8(const SourceRows& from, const TargetRows& to, const YuvConstants* matrix, int width,
             int height)
{
    convert(from.plane[0], from.stride[0], from.plane[1], from.stride[1], from.plane[2],
            from.stride[2], to.pixels, to.stride, matrix, width, height);
}

const uint16_t* samples(const uint8_t* plane)
{
    return reinterpret_cast<const uint16_t*>(plane);
}

template <Planar16 convert>
void planar16(const SourceRows& from, const TargetRows& to, const YuvConstants* matrix, int width,
              int height)
{
    convert(samples(from.plane[0]), from.stride[0] / 2, samples(from.plane[1]), from.stride[1] / 2,
            samples(from.plane[2]), from.stride[2] / 2, to.pixels, to.stride, matrix, width,
            height);
}

template <SemiPlanar8 convert>
void semiPlanar8(const SourceRows& from, const TargetRows& to, const YuvConstants* matrix,
                 int width, int height)
{
    convert(from.plane[0], from.stride[0], from.plane[1], from.stride[1], to.pixels, to.stride,
            matrix, width, height);
}

void gray8(const SourceRows& from, const TargetRows& to, const YuvConstants* matrix, int width,
           int height)
{
    libyuv::I400ToARGBMatrix(from.plane[0], from.stride[0], to.pixels, to.stride, matrix, width,
                             height);
}

template <Packed convert>
void packed(const SourceRows& from, const TargetRows& to, const YuvConstants*, int width,
            int height)
{
    convert(from.plane[0], from.stride[0], to.pixels, to.stride, width, height);
}

template <Packed convert>
void packedWithAlpha(const SourceRows& from, const TargetRows& to, const YuvConstants*, int width,
                     int height)
{
    convert(from.plane[0], from.stride[0], to.pixels, to.stride, width, height);
    makeOpaque(to, width, height);
}

using Split = int (*)(const uint8_t*, int, uint8_t*, int, uint8_t*, int, uint8_t*, int, int, int);

/// libyuv has the direct way for one matrix only; for others rows are taken apart first.
template <Packed convert, Split split>
void packedYuv(const SourceRows& from, const TargetRows& to, const YuvConstants* matrix, int width,
               int height)
{
    if (matrix == &libyuv::kYuvI601Constants) {
        convert(from.plane[0], from.stride[0], to.pixels, to.stride, width, height);
        return;
    }
    const int half = (width + 1) / 2;
    std::vector<uint8_t> luma(size_t(width) + 1);
    std::vector<uint8_t> blue(static_cast<size_t>(half));
    std::vector<uint8_t> red(static_cast<size_t>(half));
    for (int y = 0; y < height; ++y) {
        split(from.plane[0] + ptrdiff_t(y) * from.stride[0], from.stride[0], luma.data(), width,
              blue.data(), half, red.data(), half, width, 1);
        libyuv::I422ToARGBMatrix(luma.data(), width, blue.data(), half, red.data(), half,
                                 to.pixels + ptrdiff_t(y) * to.stride, to.stride, matrix, width, 1);
    }
}

// libyuv names packed formats by their order in a little-endian word, hence reversed.
const RowConversion conversions[] = {
    {AV_PIX_FMT_YUV420P, 1, planar8<libyuv::I420ToARGBMatrix>},
    {AV_PIX_FMT_YUVJ420P, 1, planar8<libyuv::I420ToARGBMatrix>},
    {AV_PIX_FMT_YUV422P, 0, planar8<libyuv::I422ToARGBMatrix>},
    {AV_PIX_FMT_YUVJ422P, 0, planar8<libyuv::I422ToARGBMatrix>},
    {AV_PIX_FMT_YUV444P, 0, planar8<libyuv::I444ToARGBMatrix>},
    {AV_PIX_FMT_YUVJ444P, 0, planar8<libyuv::I444ToARGBMatrix>},
    {AV_PIX_FMT_YUV420P10LE, 1, planar16<libyuv::I010ToARGBMatrix>},
    {AV_PIX_FMT_YUV422P10LE, 0, planar16<libyuv::I210ToARGBMatrix>},
    {AV_PIX_FMT_NV12, 1, semiPlanar8<libyuv::NV12ToARGBMatrix>},
    {AV_PIX_FMT_GRAY8, 0, gray8},
    {AV_PIX_FMT_BGR24, 0, packed<libyuv::RGB24ToARGB>},
    {AV_PIX_FMT_RGB24, 0, packed<libyuv::RAWToARGB>},
    {AV_PIX_FMT_RGBA, 0, packedWithAlpha<libyuv::ABGRToARGB>},
    {AV_PIX_FMT_BGRA, 0, packedWithAlpha<libyuv::ARGBCopy>},
    {AV_PIX_FMT_RGB0, 0, packedWithAlpha<libyuv::ABGRToARGB>},
    {AV_PIX_FMT_BGR0, 0, packedWithAlpha<libyuv::ARGBCopy>},
    {AV_PIX_FMT_YUYV422, 0, packedYuv<libyuv::YUY2ToARGB, libyuv::YUY2ToI422>},
    {AV_PIX_FMT_UYVY422, 0, packedYuv<libyuv::UYVYToARGB, libyuv::UYVYToI422>},
};

} // namespace

TargetRows rowsOf(QImage* image, bool upwards)
{
    const int stride = image->bytesPerLine();
    if (!upwards)
        return {image->bits(), stride};
    return {image->bits() + qptrdiff(stride) * (image->height() - 1), -stride};
}

void makeOpaque(const TargetRows& rows, int width, int height)
{
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(rows.pixels + qptrdiff(rows.stride) * y);
        std::for_each(line, line + width, [](QRgb& pixel) { pixel |= 0xff000000U; });
    }
}

const RowConversion* findRowConversion(AVPixelFormat format)
{
    const auto* found = std::find_if(std::begin(conversions), std::end(conversions),
                                     [format](const auto& row) { return row.format == format; });
    return found == std::end(conversions) ? nullptr : found;
}

} // namespace zolens
