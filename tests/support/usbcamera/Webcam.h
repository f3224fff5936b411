#pragma once

#include "support/fakev4l2/FakeCamera.h"

#include <memory>

/// A USB camera with MJPEG and YUYV in several sizes and all the controls that the kernel's driver
/// for USB cameras offers. It looks at a ColorChart; every control shows in the picture but the
/// compensation of backlight, the power line frequency, and those of the lens. While exposure or
/// white balance are automatic it chooses their values by itself, and the chart looks as it is.
std::shared_ptr<FakeCamera> makeWebcam();
