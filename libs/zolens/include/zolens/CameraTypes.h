#pragma once

#include <cstdint>
#include <string>

/// Camera properties. Every value passes as a double, in these units: exposure time in
/// microseconds, gain in hundredths (100 leaves the signal as it is), colour temperature in kelvin,
/// exposure target as the mean of a picture of 0 to 255. Others are numbers of the device, and so
/// are those of these four which CWCamera::hasUnit() denies.
enum tagCMProperty {
    CMProperty_Brightness = 0,
    CMProperty_Contrast = 1,
    CMProperty_Hue = 2,
    CMProperty_Saturation = 3,
    CMProperty_Gamma = 4,
    CMProperty_Sharpness = 5,
    CMProperty_Gain = 6,
    CMProperty_ExposureTarget = 11,
    CMProperty_ExposureTime = 12,
    CMProperty_RedGain = 13,
    CMProperty_GreenGain = 14,
    CMProperty_BlueGain = 15,
    CMProperty_ColorTemperature = 16,
    CMProperty_ColorMode = 18,
    CMProperty_Denoise = 19,
};

/// The white balance modes of CWCamera.
enum CWWhiteBalanceMode {
    CWWhiteBalance_Auto = 0,
    CWWhiteBalance_Manual = 1,
    CWWhiteBalance_OnePush = 2,
};

/// Device classes, the `type` of a device. The program passes them back unchanged.
enum CWDeviceClass {
    CWDevice_Uvc = 0,
    CWDevice_OtherCapture = 1,
    CWDevice_Usb3Vision = 2,
    CWDevice_Simulated = 3,
    CWDevice_NetworkBox = 7,
    CWDevice_NetworkStream = 8,
};

/// Describes one device.
struct _tag_VideoDeviceInfo // NOLINT(bugprone-reserved-identifier): the interface's own name
{
    std::int32_t type = 0;  ///< Device class.
    std::int32_t index = 0; ///< Number within the class.
    std::string name;       ///< Shown to the user.
    std::uint64_t reserved = 0;
    std::string address; ///< IPv4 address of a network box, URL of a stream, else empty.
};
