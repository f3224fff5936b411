#include "FrameConverter.h"

#include "RowConversions.h"

#include <libyuv.h>

#include <QImage>

#include <algorithm>
#include <vector>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace zolens {
namespace {

/// Rows that are mirrored at a time, few enough to stay in the processor's cache. Even, so that
/// every band starts with a chroma row of its own.
constexpr int bandRows = 4;
constexpr int bytesPerPixel = 4;
constexpr int highDefinitionWidth = 1280;
constexpr int highDefinitionHeight = 720;

bool isFullRange(const AVFrame& frame)
{
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(AVPixelFormat(frame.format));
    return frame.color_range == AVCOL_RANGE_JPEG ||
           (format && QByteArray(format->name).startsWith("yuvj"));
}

AVColorSpace colorSpaceOf(const AVFrame& frame)
{
    switch (frame.colorspace) {
    case AVCOL_SPC_BT709:
    case AVCOL_SPC_BT2020_NCL:
        return frame.colorspace;
    case AVCOL_SPC_BT2020_CL:
        return AVCOL_SPC_BT2020_NCL;
    case AVCOL_SPC_UNSPECIFIED:
        return frame.width >= highDefinitionWidth || frame.height >= highDefinitionHeight
                   ? AVCOL_SPC_BT709
                   : AVCOL_SPC_SMPTE170M;
    default:
        return AVCOL_SPC_SMPTE170M;
    }
}

const libyuv::YuvConstants* matrixFor(AVColorSpace space, bool fullRange)
{
    switch (space) {
    case AVCOL_SPC_BT709:
        return fullRange ? &libyuv::kYuvF709Constants : &libyuv::kYuvH709Constants;
    case AVCOL_SPC_BT2020_NCL:
        return fullRange ? &libyuv::kYuvV2020Constants : &libyuv::kYuv2020Constants;
    default:
        return fullRange ? &libyuv::kYuvJPEGConstants : &libyuv::kYuvI601Constants;
    }
}

/// The rows from `y` on, which is even.
SourceRows rowsFrom(const AVFrame& frame, int y, int chromaShift)
{
    SourceRows rows = {};
    for (int i = 0; i < 3; ++i) {
        rows.stride[i] = frame.linesize[i];
        if (frame.data[i])
            rows.plane[i] =
                frame.data[i] + qptrdiff(frame.linesize[i]) * (y >> (i ? chromaShift : 0));
    }
    return rows;
}

TargetRows rowsFrom(const TargetRows& target, int y)
{
    return {target.pixels + qptrdiff(target.stride) * y, target.stride};
}

/// Goes through a few rows in the cache rather than through a second picture.
void convertMirrored(const RowConversion& conversion, const AVFrame& frame,
                     const libyuv::YuvConstants* matrix, const TargetRows& target,
                     const QSize& size)
{
    const int stride = size.width() * bytesPerPixel;
    std::vector<uint8_t> band(size_t(stride) * bandRows);
    for (int y = 0; y < size.height(); y += bandRows) {
        const int rows = std::min(bandRows, size.height() - y);
        conversion.function(rowsFrom(frame, y, conversion.chromaShift), {band.data(), stride},
                            matrix, size.width(), rows);
        const TargetRows to = rowsFrom(target, y);
        libyuv::ARGBMirror(band.data(), stride, to.pixels, to.stride, size.width(), rows);
    }
}

} // namespace

bool FrameConverter::convert(const AVFrame& frame, Orientation orientation, QImage* target)
{
    const QSize size = target->size();
    if (!frame.data[0] || target->format() != QImage::Format_RGB32 || frame.width < size.width() ||
        frame.height < size.height())
        return false;
    const RowConversion* conversion = findRowConversion(AVPixelFormat(frame.format));
    if (!conversion)
        return scale(frame, orientation, target);
    const libyuv::YuvConstants* matrix = matrixFor(colorSpaceOf(frame), isFullRange(frame));
    const TargetRows rows = rowsOf(target, orientation.flip);
    if (orientation.mirror)
        convertMirrored(*conversion, frame, matrix, rows, size);
    else
        conversion->function(rowsFrom(frame, 0, conversion->chromaShift), rows, matrix,
                             size.width(), size.height());
    return true;
}

bool FrameConverter::scale(const AVFrame& frame, Orientation orientation, QImage* target)
{
    const auto format = AVPixelFormat(frame.format);
    scaler.reset(sws_getCachedContext(scaler.release(), frame.width, frame.height, format,
                                      frame.width, frame.height, AV_PIX_FMT_RGB32, SWS_POINT,
                                      nullptr, nullptr, nullptr));
    if (!scaler || !prepareScaled(frame))
        return false;
    const int* matrix = sws_getCoefficients(colorSpaceOf(frame));
    constexpr int unchanged = 1 << 16;
    sws_setColorspaceDetails(scaler.get(), matrix, isFullRange(frame),
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, unchanged, unchanged);
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, scaled->data,
                  scaled->linesize) <= 0)
        return false;
    const TargetRows rows = rowsOf(target, orientation.flip);
    const auto copy = orientation.mirror ? libyuv::ARGBMirror : libyuv::ARGBCopy;
    const QSize size = target->size();
    copy(scaled->data[0], scaled->linesize[0], rows.pixels, rows.stride, size.width(),
         size.height());
    makeOpaque(rows, size.width(), size.height());
    return true;
}

bool FrameConverter::prepareScaled(const AVFrame& frame)
{
    if (scaled && scaled->width == frame.width && scaled->height == frame.height)
        return true;
    scaled.reset(av_frame_alloc());
    if (!scaled)
        return false;
    scaled->format = AV_PIX_FMT_RGB32;
    scaled->width = frame.width;
    scaled->height = frame.height;
    if (av_frame_get_buffer(scaled.get(), 0) < 0)
        scaled.reset();
    return scaled != nullptr;
}

} // namespace zolens
