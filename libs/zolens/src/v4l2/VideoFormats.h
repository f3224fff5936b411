#pragma once

#include "device/VideoModes.h"

#include <vector>

namespace zolens {

class V4l2Device;

/// The formats that can be shown, the best first, one for each format number.
std::vector<VideoFormat> videoFormats(const V4l2Device& device);

/// Seconds between frames at the highest rate; 0 when the device does not tell.
double shortestFrameTime(const V4l2Device& device, quint32 fourcc, const QSize& size);

} // namespace zolens
