#pragma once

#include "V4l2System.h"
#include "zolens/CWUVCFilter.h"
#include "zolens/CameraTypes.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace zolens {

/// Where video devices are looked for.
struct V4l2Host
{
    std::shared_ptr<V4l2System> system = kernelV4l2();
    QString devices = QStringLiteral("/dev");
    QString sysfs = QStringLiteral("/sys");
};

/// A device node that gives pictures.
struct CaptureNode
{
    int number = 0; ///< The one in the node's name.
    QString path;
    std::string name; ///< By which the device calls itself.
    /// Both 0 for a device that is not on the USB.
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
};

QString nodePath(const V4l2Host& host, int number);

/// Of the nodes present now, whatever they give, from low to high.
std::vector<int> nodeNumbers(const V4l2Host& host);

/// Waits for the device. Nothing when there is no such node or it gives no pictures, as those for
/// metadata; nor for devices without streaming or with several planes of memory.
std::optional<CaptureNode> captureNode(const V4l2Host& host, int number);

/// The device as the first row of the filter that fits it tells; nothing when none does. Rows for
/// cameras on the USB fit no others. The index is the number of the node, so that it keeps pointing
/// at the same device while others come and go.
std::optional<_tag_VideoDeviceInfo> describe(const CaptureNode& node, const CWUVCFilter& filter);

/// Those of the nodes that the filter shows, in the order of its rows, and as they came within a
/// row.
std::vector<_tag_VideoDeviceInfo> captureDevices(std::vector<CaptureNode> nodes,
                                                 const CWUVCFilter& filter);

} // namespace zolens
