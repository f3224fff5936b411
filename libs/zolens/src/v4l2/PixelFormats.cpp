#include "PixelFormats.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <iterator>

namespace zolens {
namespace {

using Coding = PixelFormat::Coding;

constexpr int packedRgb24 = 0;
constexpr int otherRgb = 1;
constexpr int packedYuv = 5;
constexpr int planarYuv = 7;
constexpr int motionJpeg = 19;
constexpr int h264 = 20;

// Compressed pictures first, since only they come at full rate in large sizes; H.264 last, since it
// is the slowest to start and the least exact.
constexpr PixelFormat formats[] = {
    {V4L2_PIX_FMT_MJPEG, motionJpeg, Coding::Jpeg, AV_PIX_FMT_NONE},
    {V4L2_PIX_FMT_JPEG, motionJpeg, Coding::Jpeg, AV_PIX_FMT_NONE},
    {V4L2_PIX_FMT_YUYV, packedYuv, Coding::Raw, AV_PIX_FMT_YUYV422},
    {V4L2_PIX_FMT_UYVY, packedYuv, Coding::Raw, AV_PIX_FMT_UYVY422},
    {V4L2_PIX_FMT_YVYU, packedYuv, Coding::Raw, AV_PIX_FMT_YVYU422},
    {V4L2_PIX_FMT_NV12, planarYuv, Coding::Raw, AV_PIX_FMT_NV12},
    {V4L2_PIX_FMT_NV21, planarYuv, Coding::Raw, AV_PIX_FMT_NV21},
    {V4L2_PIX_FMT_YUV420, planarYuv, Coding::Raw, AV_PIX_FMT_YUV420P},
    {V4L2_PIX_FMT_YUV422P, planarYuv, Coding::Raw, AV_PIX_FMT_YUV422P},
    {V4L2_PIX_FMT_GREY, planarYuv, Coding::Raw, AV_PIX_FMT_GRAY8},
    {V4L2_PIX_FMT_BGR24, packedRgb24, Coding::Raw, AV_PIX_FMT_BGR24},
    {V4L2_PIX_FMT_RGB24, packedRgb24, Coding::Raw, AV_PIX_FMT_RGB24},
    {V4L2_PIX_FMT_XBGR32, otherRgb, Coding::Raw, AV_PIX_FMT_BGR0},
    {V4L2_PIX_FMT_BGR32, otherRgb, Coding::Raw, AV_PIX_FMT_BGR0},
    {V4L2_PIX_FMT_RGB565, otherRgb, Coding::Raw, AV_PIX_FMT_RGB565LE},
    {V4L2_PIX_FMT_H264, h264, Coding::H264, AV_PIX_FMT_NONE},
};

} // namespace

const PixelFormat* findPixelFormat(quint32 fourcc)
{
    const auto* found =
        std::find_if(std::begin(formats), std::end(formats),
                     [fourcc](const PixelFormat& format) { return format.fourcc == fourcc; });
    return found == std::end(formats) ? nullptr : found;
}

} // namespace zolens
