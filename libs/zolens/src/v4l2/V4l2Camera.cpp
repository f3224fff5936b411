#include "V4l2Camera.h"

#include "V4l2Capture.h"

namespace zolens {
namespace {

void capture(V4l2Session& session)
{
    V4l2Capture capture(session);
    if (!capture.open())
        return;
    session.opened.settle(true);
    capture.run();
}

} // namespace

V4l2Camera::V4l2Camera(V4l2Address deviceAddress, bool tryStillCapture)
    : CaptureCamera(tryStillCapture),
      address(std::move(deviceAddress))
{
}

CaptureWork V4l2Camera::prepare(FrameSink* sink) const
{
    const auto shared = std::make_shared<V4l2Session>(address, sink);
    return {shared, [shared] { capture(*shared); }, "zolens-v4l2"};
}

} // namespace zolens
