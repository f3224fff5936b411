#pragma once

#include "CaptureNodes.h"
#include "device/CaptureSession.h"

#include <utility>

namespace zolens {

/// Which device a camera stands for.
struct V4l2Address
{
    V4l2Host host;
    CWUVCFilter filter;
    int type = CWDevice_Uvc;
    int number = 0;
};

/// What a V4L2 camera and its threads share.
struct V4l2Session final : CaptureSession
{
    V4l2Session(V4l2Address deviceAddress, FrameSink* frameSink)
        : CaptureSession(frameSink),
          address(std::move(deviceAddress))
    {
    }

    const V4l2Address address;
};

} // namespace zolens
