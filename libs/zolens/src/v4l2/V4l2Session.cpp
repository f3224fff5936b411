#include "V4l2Session.h"

#include "CameraControls.h"

#include <utility>

namespace zolens {

V4l2Session::V4l2Session(V4l2Address deviceAddress, bool tryStillCapture, FrameSink* frameSink)
    : address(std::move(deviceAddress)),
      stillPath(tryStillCapture),
      sink(frameSink)
{
}

void V4l2Session::setControls(std::shared_ptr<CameraControls> cameraControls)
{
    const std::lock_guard<std::mutex> lock(mutex);
    deviceControls = std::move(cameraControls);
}

std::shared_ptr<CameraControls> V4l2Session::controls() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return deviceControls;
}

bool V4l2Session::hasStillSizes() const
{
    return stillPath && modes.sizes().size() > 1;
}

bool V4l2Session::wantsLargeStill() const
{
    return still.isPending() && isLargeStill();
}

bool V4l2Session::wantsPreviewStill() const
{
    return still.isPending() && !isLargeStill();
}

bool V4l2Session::isLargeStill() const
{
    return hasStillSizes() && modes.still() != modes.preview();
}

} // namespace zolens
