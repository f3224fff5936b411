#include "camera/DeviceFilter.h"

#include <zolens/CameraTypes.h>

namespace {

constexpr std::uint16_t any = 0;
constexpr std::uint16_t logitech = 0x046d;
constexpr std::uint16_t microsoft = 0x045e;
constexpr std::uint16_t creative = 0x041e;
constexpr std::uint16_t sonix = 0x0c45;
constexpr std::uint16_t etronTech = 0x1e4e;
constexpr std::uint16_t sunplus = 0x1bcf;
constexpr std::uint16_t zStar = 0x0ac8;
constexpr std::uint16_t aveo = 0x1871;

} // namespace

const std::vector<CWUVCFilterItem>& deviceFilterRows()
{
    // Devices without a model string show the name that they give themselves. The wildcards of the
    // two makers of bridge chips keep their cameras ahead of those of unknown makers.
    static const std::vector<CWUVCFilterItem> rows = {
        {logitech, 0x0825, "Logitech Webcam C270", CWDevice_Uvc},
        {logitech, 0x082d, "Logitech HD Pro Webcam C920", CWDevice_Uvc},
        {logitech, 0x085c, "Logitech C922 Pro Stream Webcam", CWDevice_Uvc},
        {logitech, 0x0843, "Logitech Webcam C930e", CWDevice_Uvc},
        {logitech, 0x085e, "Logitech BRIO Ultra HD Webcam", CWDevice_Uvc},
        {microsoft, 0x0772, "Microsoft LifeCam Studio", CWDevice_Uvc},
        {microsoft, 0x0779, "Microsoft LifeCam HD-3000", CWDevice_Uvc},
        {creative, 0x4095, "Creative Live! Cam Sync HD", CWDevice_Uvc},
        {sonix, 0x62c0, "Sonix USB 2.0 Camera", CWDevice_Uvc},
        {etronTech, 0x0109, "EtronTech eSP570 Camera", CWDevice_Uvc},
        {sunplus, 0x2281, "Sunplus SPCA2281 Camera", CWDevice_Uvc},
        {zStar, 0x3420, "Z-Star Venus USB 2.0 Camera", CWDevice_Uvc},
        {aveo, 0x0d01, "Aveo USB 2.0 Camera", CWDevice_Uvc},
        {sonix, any, "", CWDevice_Uvc},
        {sunplus, any, "", CWDevice_Uvc},
        {any, any, "", CWDevice_Uvc},
        {any, any, "", CWDevice_OtherCapture},
        {any, any, "", CWDevice_Usb3Vision},
        {any, any, "", CWDevice_Simulated},
    };
    return rows;
}
