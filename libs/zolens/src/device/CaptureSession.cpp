#include "CaptureSession.h"

#include <utility>

namespace zolens {

void CaptureSession::inherit(const CaptureSession& earlier)
{
    tryStillCapture = earlier.tryStillCapture;
    look = earlier.look;
}

void CaptureSession::setControls(std::shared_ptr<DeviceControls> newControls)
{
    const std::lock_guard<std::mutex> lock(mutex);
    deviceControls = std::move(newControls);
}

std::shared_ptr<DeviceControls> CaptureSession::controls() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return deviceControls;
}

bool CaptureSession::hasStillSizes() const
{
    return tryStillCapture && modes.sizes().size() > 1;
}

bool CaptureSession::wantsLargeStill() const
{
    return still.isPending() && isLargeStill();
}

bool CaptureSession::wantsPreviewStill() const
{
    return still.isPending() && !isLargeStill();
}

std::optional<CaptureEnd> CaptureSession::interruption(const VideoMode& running) const
{
    if (wake.isCancelled())
        return CaptureEnd::Cancelled;
    if (modes.preview() != running)
        return CaptureEnd::NewMode;
    if (wantsLargeStill())
        return CaptureEnd::LargeStill;
    return std::nullopt;
}

bool CaptureSession::isLargeStill() const
{
    return hasStillSizes() && modes.still() != modes.preview();
}

} // namespace zolens
