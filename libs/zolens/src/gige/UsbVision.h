#pragma once

#include "Aravis.h"

#include "zolens/CWUVCFilter.h"
#include "zolens/CameraTypes.h"

#include <vector>

namespace zolens {

/// The USB3 Vision cameras that are present now and that the filter shows: the first row for their
/// class without ids counts, since their ids are not told. A camera keeps its number as long as the
/// program runs, also while it is unplugged. Waits for the USB; nothing goes to the network.
std::vector<_tag_VideoDeviceInfo> usbVisionDevices(const CWUVCFilter& filter);

/// Connects to the camera of that number; null on failure. Waits for the camera.
AravisPointer<ArvCamera> connectToUsbCamera(int number);

} // namespace zolens
