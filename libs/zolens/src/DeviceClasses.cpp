#include "DeviceClasses.h"

#include "device/TaskThread.h"
#include "gige/BoxScan.h"
#include "gige/UsbVision.h"
#include "gige/VisionCamera.h"
#include "simulated/SimulatedCamera.h"
#include "stream/StreamCamera.h"
#include "v4l2/CaptureScan.h"
#include "v4l2/V4l2Camera.h"

#include <algorithm>
#include <mutex>

namespace zolens {

namespace {

/// A device that does not answer holds the list up no longer.
constexpr std::chrono::milliseconds scanTime(2000);

/// Between two rounds in which network boxes are asked to answer.
constexpr std::chrono::seconds shortestInterval(1);
constexpr std::chrono::seconds longestInterval(3600);

/// The rows that decide which devices are shown, for use on any thread.
class FilterInForce final
{
public:
    void set(const CWUVCFilter* newFilter)
    {
        const std::lock_guard lock(mutex);
        filter = newFilter;
    }

    /// Without a filter every camera is shown.
    CWUVCFilter get() const
    {
        const std::lock_guard lock(mutex);
        if (filter)
            return *filter;
        CWUVCFilter any;
        any.addItem({0, 0, {}, CWDevice_Uvc});
        any.addItem({0, 0, {}, CWDevice_OtherCapture});
        any.addItem({0, 0, {}, CWDevice_Usb3Vision});
        any.addItem({0, 0, {}, CWDevice_Simulated});
        return any;
    }

private:
    mutable std::mutex mutex;
    const CWUVCFilter* filter = nullptr;
};

FilterInForce filterInForce;

V4l2Host& captureHost()
{
    static V4l2Host host;
    return host;
}

/// The scan while there is one, for use on any thread. It ends with the program at the latest.
class OnlyBoxScan final
{
public:
    bool start(std::chrono::milliseconds interval)
    {
        const std::lock_guard lock(mutex);
        if (!scan)
            scan = std::make_unique<BoxScan>(interval);
        if (!scan->isRunning())
            scan.reset();
        return scan != nullptr;
    }

    void stop()
    {
        const std::lock_guard lock(mutex);
        scan.reset();
    }

    std::vector<_tag_VideoDeviceInfo> boxes() const
    {
        const std::lock_guard lock(mutex);
        return scan ? scan->boxes() : std::vector<_tag_VideoDeviceInfo>();
    }

private:
    mutable std::mutex mutex;
    std::unique_ptr<BoxScan> scan;
};

OnlyBoxScan onlyBoxScan;

using Devices = std::vector<_tag_VideoDeviceInfo>;

/// Each class has a scanner of its own, so that none keeps the other from being listed.
Devices captureDevices()
{
    static CaptureScan scanner;
    return captureDevices(scanner.nodes(captureHost(), scanTime), filterInForce.get());
}

/// For the program's life, once the system has had a thread for it. For use on any thread.
std::shared_ptr<TaskThread> usb3Scanner()
{
    static std::mutex mutex;
    static std::shared_ptr<TaskThread> scanner;
    const std::lock_guard lock(mutex);
    if (!scanner || !scanner->isRunning())
        scanner = std::make_shared<TaskThread>();
    return scanner;
}

Devices usb3Devices()
{
    const auto scan = [filter = filterInForce.get()] { return usbVisionDevices(filter); };
    return usb3Scanner()->ask<Devices>(scan, scanTime).value_or(Devices());
}

bool showsSimulated(const CWUVCFilter& filter)
{
    const auto& rows = filter.items();
    return std::any_of(rows.begin(), rows.end(),
                       [](const auto& row) { return row.type == CWDevice_Simulated; });
}

} // namespace

void setDeviceFilter(const CWUVCFilter* filter)
{
    filterInForce.set(filter);
}

void setCaptureHost(const V4l2Host& host)
{
    captureHost() = host;
}

std::unique_ptr<CWCamera> createCamera(int type, int index, bool tryStillCapture)
{
    const _tag_VideoDeviceInfo simulated = SimulatedCamera::description();
    if (type == simulated.type && index == simulated.index)
        return std::make_unique<SimulatedCamera>(tryStillCapture);
    if (type == CWDevice_Uvc || type == CWDevice_OtherCapture) {
        V4l2Address address{captureHost(), filterInForce.get(), type, index};
        return std::make_unique<V4l2Camera>(std::move(address), tryStillCapture);
    }
    if (type == CWDevice_Usb3Vision)
        return std::make_unique<VisionCamera>(VisionAddress{type, {}, index}, tryStillCapture);
    return nullptr;
}

std::unique_ptr<CWCamera> createNetworkCamera(int type, const QString& url)
{
    if (type == CWDevice_NetworkStream)
        return std::make_unique<StreamCamera>(url);
    if (type == CWDevice_NetworkBox)
        return std::make_unique<VisionCamera>(VisionAddress{type, url, 0}, false);
    return nullptr;
}

std::vector<_tag_VideoDeviceInfo> presentCameras()
{
    Devices devices = captureDevices();
    const Devices onUsb3 = usb3Devices();
    devices.insert(devices.end(), onUsb3.begin(), onUsb3.end());
    if (showsSimulated(filterInForce.get()))
        devices.push_back(SimulatedCamera::description());
    return devices;
}

std::vector<_tag_VideoDeviceInfo> foundBoxes()
{
    return onlyBoxScan.boxes();
}

bool startBoxScan(std::chrono::seconds interval)
{
    return onlyBoxScan.start(std::clamp(interval, shortestInterval, longestInterval));
}

void stopBoxScan()
{
    onlyBoxScan.stop();
}

} // namespace zolens
