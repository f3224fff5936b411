#include "DeviceClasses.h"

#include "simulated/SimulatedCamera.h"
#include "stream/StreamCamera.h"

namespace zolens {

std::unique_ptr<CWCamera> createCamera(int type, int index, bool tryStillCapture)
{
    const _tag_VideoDeviceInfo simulated = SimulatedCamera::description();
    if (type == simulated.type && index == simulated.index) {
        return std::make_unique<SimulatedCamera>(tryStillCapture);
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
    return {SimulatedCamera::description()};
}

} // namespace zolens
