#pragma once

#include "support/fakev4l2/CameraBench.h"

#include <memory>

/// A machine with one USB camera, which gives MJPEG in two sizes. A base of its tests.
class PluggedWebcam
{
protected:
    void plugWebcam()
    {
        bench = std::make_unique<CameraBench>();
        device = CameraBench::webcam();
        device->formats = {{V4L2_PIX_FMT_MJPEG, {{640, 480}, {1280, 720}}, {}}};
        bench->plug(0, device, "1234", "5678");
    }

    std::unique_ptr<CameraBench> bench;
    std::shared_ptr<FakeCamera> device;
};
