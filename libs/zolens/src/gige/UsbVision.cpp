#include "UsbVision.h"

#include "DeviceNames.h"
#include "VisionLog.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <string>

namespace zolens {
namespace {

constexpr char usbInterface[] = "USB3Vision";

/// Aravis looks for devices on all its interfaces at once, on the network by broadcasts. Boxes are
/// reached by their addresses here, which needs none.
void lookOnTheUsbOnly()
{
    for (unsigned int i = 0; i < arv_get_n_interfaces(); ++i) {
        const char* interface = arv_get_interface_id(i);
        if (std::strcmp(interface, usbInterface) != 0)
            arv_disable_interface(interface);
    }
}

/// The cameras that were ever seen; the position is the number.
class KnownCameras final
{
public:
    int numberOf(const std::string& id)
    {
        const std::lock_guard lock(mutex);
        const auto found = std::find(ids.begin(), ids.end(), id);
        const auto number = int(found - ids.begin());
        if (found == ids.end())
            ids.push_back(id);
        return number;
    }

    /// Empty for a number that is none.
    std::string idOf(int number) const
    {
        const std::lock_guard lock(mutex);
        const bool known = number >= 0 && std::size_t(number) < ids.size();
        return known ? ids[std::size_t(number)] : std::string();
    }

private:
    mutable std::mutex mutex;
    std::vector<std::string> ids;
};

KnownCameras knownCameras;

_tag_VideoDeviceInfo describe(unsigned int position, const CWUVCFilterItem& row)
{
    const char* id = arv_get_device_id(position);
    _tag_VideoDeviceInfo info;
    info.type = CWDevice_Usb3Vision;
    info.index = knownCameras.numberOf(id ? id : "");
    info.name = row.model.empty() ? deviceName(plainText(arv_get_device_vendor(position)),
                                               plainText(arv_get_device_model(position)),
                                               QStringLiteral("USB3 Vision"))
                                        .toStdString()
                                  : row.model;
    return info;
}

} // namespace

std::vector<_tag_VideoDeviceInfo> usbVisionDevices(const CWUVCFilter& filter)
{
    const auto& rows = filter.items();
    const auto row = std::find_if(rows.begin(), rows.end(), [](const CWUVCFilterItem& item) {
        return item.type == CWDevice_Usb3Vision && item.vendorId == 0 && item.productId == 0;
    });
    std::vector<_tag_VideoDeviceInfo> devices;
    if (row == rows.end())
        return devices;
    lookOnTheUsbOnly();
    arv_update_device_list();
    for (unsigned int i = 0; i < arv_get_n_devices(); ++i)
        devices.push_back(describe(i, *row));
    return devices;
}

AravisPointer<ArvCamera> connectToUsbCamera(int number)
{
    const std::string id = knownCameras.idOf(number);
    if (id.empty())
        return nullptr;
    lookOnTheUsbOnly();
    AravisError error;
    const std::lock_guard<std::mutex> lock(openingMutex);
    AravisPointer<ArvCamera> camera(arv_camera_new(id.c_str(), error.out()));
    if (!camera)
        qCInfo(visionLog, "%s cannot be opened: %s", id.c_str(), error.text());
    return camera;
}

} // namespace zolens
