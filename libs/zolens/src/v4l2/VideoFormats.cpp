#include "VideoFormats.h"

#include "PixelFormats.h"
#include "V4l2Device.h"
#include "device/PictureSizes.h"

#include <linux/videodev2.h>

#include <algorithm>

namespace zolens {
namespace {

/// Bounds for lists of drivers that never come to an end.
constexpr __u32 mostFormats = 64;
constexpr __u32 mostSizes = 256;
constexpr __u32 mostIntervals = 64;
constexpr __u32 longestSide = 32768;

bool isUsable(__u32 width, __u32 height)
{
    return width > 0 && height > 0 && width <= longestSide && height <= longestSide;
}

void add(std::vector<QSize>* sizes, __u32 width, __u32 height)
{
    if (isUsable(width, height))
        sizes->emplace_back(int(width), int(height));
}

QSize bounded(__u32 width, __u32 height)
{
    return QSize(int(std::min(width, longestSide)), int(std::min(height, longestSide)));
}

void addStepwise(std::vector<QSize>* sizes, const v4l2_frmsize_stepwise& range)
{
    add(sizes, range.min_width, range.min_height);
    const SizeGrid grid = {bounded(range.min_width, range.min_height),
                           bounded(range.max_width, range.max_height),
                           bounded(range.step_width, range.step_height)};
    const std::vector<QSize> common = commonSizesOn(grid);
    sizes->insert(sizes->end(), common.begin(), common.end());
    add(sizes, range.max_width, range.max_height);
}

/// Drivers that cannot list their sizes still have one.
void addCurrent(const V4l2Device& device, std::vector<QSize>* sizes)
{
    v4l2_format format = {};
    format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    if (device.request(VIDIOC_G_FMT, &format) == 0)
        add(sizes, format.fmt.pix.width, format.fmt.pix.height);
}

std::vector<QSize> sizesOf(const V4l2Device& device, quint32 fourcc)
{
    std::vector<QSize> sizes;
    for (__u32 i = 0; i < mostSizes; ++i) {
        v4l2_frmsizeenum entry = {};
        entry.index = i;
        entry.pixel_format = fourcc;
        if (device.request(VIDIOC_ENUM_FRAMESIZES, &entry) != 0)
            break;
        if (entry.type != V4L2_FRMSIZE_TYPE_DISCRETE) {
            addStepwise(&sizes, entry.stepwise);
            break;
        }
        add(&sizes, entry.discrete.width, entry.discrete.height);
    }
    if (sizes.empty())
        addCurrent(device, &sizes);
    sortByArea(&sizes);
    return sizes;
}

std::vector<const PixelFormat*> pixelFormats(const V4l2Device& device)
{
    std::vector<const PixelFormat*> formats;
    for (__u32 i = 0; i < mostFormats; ++i) {
        v4l2_fmtdesc entry = {};
        entry.index = i;
        entry.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (device.request(VIDIOC_ENUM_FMT, &entry) != 0)
            break;
        if (const PixelFormat* format = findPixelFormat(entry.pixelformat))
            formats.push_back(format);
    }
    std::sort(formats.begin(), formats.end());
    return formats;
}

bool contains(const std::vector<VideoFormat>& formats, int number)
{
    return std::any_of(formats.begin(), formats.end(),
                       [number](const VideoFormat& format) { return format.number == number; });
}

double seconds(const v4l2_fract& time)
{
    return time.denominator == 0 ? 0.0 : double(time.numerator) / time.denominator;
}

} // namespace

std::vector<VideoFormat> videoFormats(const V4l2Device& device)
{
    std::vector<VideoFormat> formats;
    for (const PixelFormat* pixels : pixelFormats(device)) {
        if (contains(formats, pixels->number))
            continue;
        std::vector<QSize> sizes = sizesOf(device, pixels->fourcc);
        if (!sizes.empty())
            formats.push_back({pixels->fourcc, pixels->number, std::move(sizes)});
    }
    return formats;
}

double shortestFrameTime(const V4l2Device& device, quint32 fourcc, const QSize& size)
{
    double shortest = 0.0;
    for (__u32 i = 0; i < mostIntervals; ++i) {
        v4l2_frmivalenum entry = {};
        entry.index = i;
        entry.pixel_format = fourcc;
        entry.width = __u32(size.width());
        entry.height = __u32(size.height());
        if (device.request(VIDIOC_ENUM_FRAMEINTERVALS, &entry) != 0)
            break;
        const bool discrete = entry.type == V4L2_FRMIVAL_TYPE_DISCRETE;
        const double time = seconds(discrete ? entry.discrete : entry.stepwise.min);
        if (time > 0.0 && (shortest == 0.0 || time < shortest))
            shortest = time;
        if (!discrete)
            break;
    }
    return shortest;
}

} // namespace zolens
