#pragma once

#include "V4l2Session.h"
#include "device/CaptureCamera.h"

namespace zolens {

/// A camera on the USB, or another capture device of the machine.
class V4l2Camera final : public CaptureCamera
{
public:
    V4l2Camera(V4l2Address deviceAddress, bool tryStillCapture);

protected:
    CaptureWork prepare(FrameSink* sink) const override;

private:
    const V4l2Address address;
};

} // namespace zolens
