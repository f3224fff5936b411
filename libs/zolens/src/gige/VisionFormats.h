#pragma once

#include "FeatureAccess.h"
#include "device/VideoModes.h"

#include <vector>

namespace zolens {

/// The formats that can be shown, one for each format number: colours before grey, then those with
/// the fewest bits, which allow the highest rate. Sizes are regions about the middle of the sensor,
/// the last of them all of it. Moves the region in use to the corner.
std::vector<VideoFormat> visionFormats(FeatureAccess& features);

/// Makes the camera send pictures of that kind, smaller by a step of its own where the format asks
/// for that. False when it refuses.
bool selectMode(FeatureAccess& features, const VideoFormat& format, const QSize& size);

} // namespace zolens
