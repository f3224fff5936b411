#pragma once

#include "PixelFormats.h"

#include <QSize>

#include <vector>

namespace zolens {

class V4l2Device;

/// A format that a device offers, with its sizes from small to large.
struct VideoFormat
{
    const PixelFormat* pixels;
    std::vector<QSize> sizes; ///< Never empty.
};

/// The formats that can be shown, the best first, one for each format number.
std::vector<VideoFormat> videoFormats(const V4l2Device& device);

/// Seconds between frames at the highest rate; 0 when the device does not tell.
double shortestFrameTime(const V4l2Device& device, quint32 fourcc, const QSize& size);

} // namespace zolens
