#pragma once

#include "VisionSession.h"
#include "device/CaptureCamera.h"

namespace zolens {

/// A network box of GigE Vision, or a camera of USB3 Vision. One that vanishes is taken up again by
/// itself, with the settings that it had.
class VisionCamera final : public CaptureCamera
{
public:
    VisionCamera(VisionAddress visionAddress, bool tryStillCapture);

protected:
    CaptureWork prepare(FrameSink* sink) const override;

private:
    const VisionAddress address;
};

} // namespace zolens
