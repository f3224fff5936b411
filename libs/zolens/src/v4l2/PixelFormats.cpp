#include "PixelFormats.h"

#include "pixels/FormatNumber.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <iterator>

namespace zolens {
namespace {

using Coding = PixelFormat::Coding;
using namespace FormatNumber;

constexpr PixelFormat grey(quint32 fourcc, std::uint32_t sensorCode)
{
    return {fourcc, planarYuv, Coding::Sensor, AV_PIX_FMT_NONE, sensorCode};
}

constexpr PixelFormat bayer(quint32 fourcc, std::uint32_t sensorCode)
{
    return {fourcc, otherRgb, Coding::Sensor, AV_PIX_FMT_NONE, sensorCode};
}

// Compressed pictures first, since only they come at full rate in large sizes; H.264 last, since it
// is the slowest to start and the least exact. Fewer bits of a sample come before more.
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
    grey(V4L2_PIX_FMT_Y10, 0x01100003),
    grey(V4L2_PIX_FMT_Y12, 0x01100005),
    grey(V4L2_PIX_FMT_Y14, 0x01100025),
    grey(V4L2_PIX_FMT_Y16, 0x01100007),
    {V4L2_PIX_FMT_BGR24, packedRgb24, Coding::Raw, AV_PIX_FMT_BGR24},
    {V4L2_PIX_FMT_RGB24, packedRgb24, Coding::Raw, AV_PIX_FMT_RGB24},
    {V4L2_PIX_FMT_XBGR32, otherRgb, Coding::Raw, AV_PIX_FMT_BGR0},
    {V4L2_PIX_FMT_BGR32, otherRgb, Coding::Raw, AV_PIX_FMT_BGR0},
    {V4L2_PIX_FMT_RGB565, otherRgb, Coding::Raw, AV_PIX_FMT_RGB565LE},
    bayer(V4L2_PIX_FMT_SGRBG8, 0x01080008),
    bayer(V4L2_PIX_FMT_SRGGB8, 0x01080009),
    bayer(V4L2_PIX_FMT_SGBRG8, 0x0108000a),
    bayer(V4L2_PIX_FMT_SBGGR8, 0x0108000b),
    bayer(V4L2_PIX_FMT_SGRBG10, 0x0110000c),
    bayer(V4L2_PIX_FMT_SRGGB10, 0x0110000d),
    bayer(V4L2_PIX_FMT_SGBRG10, 0x0110000e),
    bayer(V4L2_PIX_FMT_SBGGR10, 0x0110000f),
    bayer(V4L2_PIX_FMT_SGRBG12, 0x01100010),
    bayer(V4L2_PIX_FMT_SRGGB12, 0x01100011),
    bayer(V4L2_PIX_FMT_SGBRG12, 0x01100012),
    bayer(V4L2_PIX_FMT_SBGGR12, 0x01100013),
    bayer(V4L2_PIX_FMT_SGRBG16, 0x0110002e),
    bayer(V4L2_PIX_FMT_SRGGB16, 0x0110002f),
    bayer(V4L2_PIX_FMT_SGBRG16, 0x01100030),
    bayer(V4L2_PIX_FMT_SBGGR16, 0x01100031),
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
