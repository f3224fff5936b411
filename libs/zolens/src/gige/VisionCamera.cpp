#include "VisionCamera.h"

#include "VisionCapture.h"

namespace zolens {
namespace {

void capture(const std::shared_ptr<VisionSession>& session)
{
    VisionCapture capture(session);
    if (!capture.open())
        return;
    session->opened.settle(true);
    capture.run();
}

} // namespace

VisionCamera::VisionCamera(VisionAddress visionAddress, bool tryStillCapture)
    : CaptureCamera(tryStillCapture),
      address(std::move(visionAddress))
{
}

CaptureWork VisionCamera::prepare(FrameSink* sink) const
{
    const auto shared = std::make_shared<VisionSession>(address, sink);
    return {shared, [shared] { capture(shared); }, "zolens-vision"};
}

} // namespace zolens
