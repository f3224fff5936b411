#include "CaptureSession.h"

#include <algorithm>
#include <utility>

namespace zolens {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds longestStillPatience(30000);
/// That of the picture before, and its own.
constexpr int exposuresToAwait = 2;

constexpr double longFrameTime = 0.3; // seconds
constexpr int settlingShortFrames = 3;
constexpr int settlingLongFrames = 1;

} // namespace

void CaptureSession::inherit(const CaptureSession& earlier)
{
    tryStillCapture = earlier.tryStillCapture;
    look = earlier.look;
}

void CaptureSession::offer(std::vector<VideoFormat> formats, VideoModes::FirstSize first)
{
    tell(modes.offer(std::move(formats), first));
}

void CaptureSession::correct(const VideoMode& asked, const VideoMode& actual)
{
    tell(modes.correct(asked, actual));
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

milliseconds CaptureSession::patienceForStill() const
{
    const auto exposures = std::chrono::ceil<milliseconds>(exposuresToAwait * exposureTime());
    return std::min(stillPatience + exposures, longestStillPatience);
}

int CaptureSession::settlingFrames(double statedFrameTime) const
{
    const double exposure = std::chrono::duration<double>(exposureTime()).count();
    const bool isLong = std::max(statedFrameTime, exposure) > longFrameTime;
    return isLong ? settlingLongFrames : settlingShortFrames;
}

std::chrono::microseconds CaptureSession::exposureTime() const
{
    const auto device = controls();
    return device ? device->exposureTime() : std::chrono::microseconds(0);
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

void CaptureSession::tell(bool changed)
{
    if (changed && opened.isSettled())
        sink.modesChanged();
}

} // namespace zolens
