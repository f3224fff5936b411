#pragma once

#include "device/CaptureSession.h"

#include <QString>

#include <utility>

namespace zolens {

/// Which camera is meant.
struct VisionAddress
{
    int type = CWDevice_NetworkBox;
    QString host;   ///< The IPv4 address of a network box.
    int number = 0; ///< Of a camera on the USB.
};

/// What a camera of GigE Vision or USB3 Vision and its threads share.
struct VisionSession final : CaptureSession
{
    VisionSession(VisionAddress visionAddress, FrameSink* frameSink)
        : CaptureSession(frameSink),
          address(std::move(visionAddress))
    {
    }

    const VisionAddress address;
};

} // namespace zolens
