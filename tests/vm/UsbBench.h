#pragma once

#include "UsbCamera.h"
#include "Viewer.h"

#include <zolens/CWUVCFilter.h>

/// The kernel's driver for USB cameras with a camera in software, and the filter in force, in which
/// that camera has a row of its own.
class UsbBench final
{
public:
    static constexpr int mjpeg = 19;
    static constexpr int yuyv = 5;
    static constexpr QSize small{640, 480};
    static constexpr QSize medium{1280, 720};
    static constexpr QSize large{1920, 1080};

    /// With a camera that gives no larger pictures than this, which are slow to decode.
    explicit UsbBench(const QSize& largest);

    /// Plugs the camera in, as after power-on, and waits until it is listed.
    bool plug();
    /// Unplugs it and waits until it is gone.
    bool unplug();

    static std::string name() { return "Test Camera"; }
    /// Waits for so many cameras on the USB.
    bool lists(std::size_t count) const;
    std::vector<_tag_VideoDeviceInfo> listed() const;
    void useFilter();

    /// Null when it does not open.
    std::unique_ptr<Viewer> openedAtOnce(bool tryStillCapture = false) const;
    /// Tries for a while: a slow machine takes longer than an opening may, and the kernel needs a
    /// moment to let go of a camera that was closed.
    std::unique_ptr<Viewer> opened(bool tryStillCapture = false) const;

private:
    CWUVCFilter filter;

public:
    UsbCamera usb;
};
