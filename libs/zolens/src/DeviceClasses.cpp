#include "DeviceClasses.h"

#include "simulated/SimulatedCamera.h"
#include "stream/StreamCamera.h"
#include "v4l2/TaskThread.h"
#include "v4l2/V4l2Camera.h"

#include <mutex>

namespace zolens {

namespace {

/// A device that does not answer holds the list up no longer.
constexpr std::chrono::milliseconds scanTime(2000);

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
        if (filter) {
            return *filter;
        }
        CWUVCFilter any;
        any.addItem({0, 0, {}, CWDevice_Uvc});
        any.addItem({0, 0, {}, CWDevice_OtherCapture});
        return any;
    }

private:
    mutable std::mutex mutex;
    const CWUVCFilter* filter = nullptr;
};

FilterInForce filterInForce;

using Devices = std::vector<_tag_VideoDeviceInfo>;

Devices captureDevices()
{
    static TaskThread scanner;
    const auto scan = [filter = filterInForce.get()] { return captureDevices(V4l2Host(), filter); };
    return scanner.ask<Devices>(scan, scanTime).value_or(Devices());
}

} // namespace

void setDeviceFilter(const CWUVCFilter* filter)
{
    filterInForce.set(filter);
}

std::unique_ptr<CWCamera> createCamera(int type, int index, bool tryStillCapture)
{
    const _tag_VideoDeviceInfo simulated = SimulatedCamera::description();
    if (type == simulated.type && index == simulated.index) {
        return std::make_unique<SimulatedCamera>(tryStillCapture);
    }
    if (type == CWDevice_Uvc || type == CWDevice_OtherCapture) {
        V4l2Address address{V4l2Host(), filterInForce.get(), type, index};
        return std::make_unique<V4l2Camera>(std::move(address), tryStillCapture);
    }
    return nullptr;
}

std::unique_ptr<CWCamera> createNetworkCamera(int type, const QString& url)
{
    if (type == CWDevice_NetworkStream) {
        return std::make_unique<StreamCamera>(url);
    }
    return nullptr;
}

std::vector<_tag_VideoDeviceInfo> presentCameras()
{
    Devices devices = captureDevices();
    devices.push_back(SimulatedCamera::description());
    return devices;
}

} // namespace zolens
