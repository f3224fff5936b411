#pragma once

#include "ffmpeg/AvPointers.h"

class QImage;

namespace libyuv {
struct YuvConstants;
}

namespace zolens {

/// Where rows of a picture begin, plane by plane; strides in bytes.
struct SourceRows
{
    const uint8_t* plane[3];
    int stride[3];
};

struct TargetRows
{
    uint8_t* pixels;
    int stride; ///< In bytes; negative when the rows go upwards.
};

TargetRows rowsOf(QImage* image, bool upwards);
/// Makes all pixels opaque.
void makeOpaque(const TargetRows& rows, int width, int height);

/// How pictures of one pixel format become 32 bit RGB by libyuv.
struct RowConversion
{
    using Function = void (*)(const SourceRows&, const TargetRows&, const libyuv::YuvConstants*,
                              int width, int height);

    AVPixelFormat format;
    int chromaShift; ///< Binary logarithm of the picture rows per chroma row.
    Function function;
};

/// Null for formats that libyuv lacks.
const RowConversion* findRowConversion(AVPixelFormat format);

} // namespace zolens
