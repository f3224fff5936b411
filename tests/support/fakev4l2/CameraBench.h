#pragma once

#include "FakeV4l2.h"
#include "v4l2/CaptureNodes.h"
#include "v4l2/V4l2Camera.h"

#include <QTemporaryDir>

/// A machine with fake video devices: its device nodes, what the kernel tells of the USB, and the
/// system calls.
class CameraBench final
{
public:
    CameraBench();

    zolens::V4l2Host host() const;
    QString node(int number) const;
    /// Without ids the device is not on the USB.
    void plug(int number, const std::shared_ptr<FakeCamera>& camera, const char* vendorId = nullptr,
              const char* productId = nullptr);
    void unplug(int number);
    /// The device at node 0, on the USB, with the wildcard filter.
    zolens::V4l2Address address() const;

    /// MJPEG in three sizes up to 1920 x 1080, and YUYV in the smallest, with the controls of a
    /// usual camera.
    static std::shared_ptr<FakeCamera> webcam();
    static CWUVCFilter wildcards();

    const std::shared_ptr<FakeV4l2> system = std::make_shared<FakeV4l2>();

private:
    QTemporaryDir folder;
};
