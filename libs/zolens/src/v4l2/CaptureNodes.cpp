#include "CaptureNodes.h"

#include "V4l2Device.h"

#include <linux/videodev2.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstring>
#include <functional>

namespace zolens {
namespace {

constexpr int hexadecimal = 16;
/// From the interface of a device up to the device; some hubs and drivers add levels.
constexpr int mostLevels = 4;

std::optional<v4l2_capability> capability(const V4l2Host& host, const QString& path)
{
    const V4l2Device device(host.system, path);
    v4l2_capability answer = {};
    if (!device.isOpen() || device.request(VIDIOC_QUERYCAP, &answer) != 0)
        return std::nullopt;
    return answer;
}

bool givesPictures(const v4l2_capability& answer)
{
    constexpr __u32 needed = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
    const bool ofNode = answer.capabilities & V4L2_CAP_DEVICE_CAPS;
    const __u32 caps = ofNode ? answer.device_caps : answer.capabilities;
    return (caps & needed) == needed;
}

template <std::size_t size>
std::string text(const __u8 (&characters)[size])
{
    const char* begin = reinterpret_cast<const char*>(characters);
    return std::string(begin, strnlen(begin, size));
}

/// The kernel names USB cameras by function and product, which mostly are the same twice, and cuts
/// the second off where there is no more room.
std::string withoutRepetition(const std::string& name)
{
    const std::string separator = ": ";
    const std::size_t end = name.find(separator);
    if (end == std::string::npos)
        return name;
    const std::string first = name.substr(0, end);
    const std::string second = name.substr(end + separator.size());
    return first.compare(0, second.size(), second) == 0 ? first : name;
}

std::uint16_t readId(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().trimmed().toUShort(nullptr, hexadecimal);
}

/// Reads the ids of the USB device that the node belongs to, where it belongs to one.
void readUsbIds(const V4l2Host& host, CaptureNode* node)
{
    const QString link =
        host.sysfs + QStringLiteral("/class/video4linux/video%1/device").arg(node->number);
    QString folder = QFileInfo(link).canonicalFilePath();
    for (int i = 0; i < mostLevels && !folder.isEmpty(); ++i) {
        if (QFile::exists(folder + QLatin1String("/idVendor"))) {
            node->vendorId = readId(folder + QLatin1String("/idVendor"));
            node->productId = readId(folder + QLatin1String("/idProduct"));
            return;
        }
        folder = QFileInfo(folder).path();
    }
}

bool idFits(std::uint16_t wanted, std::uint16_t id)
{
    return wanted == 0 || wanted == id;
}

bool rowFits(const CWUVCFilterItem& row, const CaptureNode& node)
{
    const bool onUsb = node.vendorId != 0;
    const bool ofClass = row.type == CWDevice_OtherCapture || (row.type == CWDevice_Uvc && onUsb);
    return ofClass && idFits(row.vendorId, node.vendorId) && idFits(row.productId, node.productId);
}

/// Null when none fits.
const CWUVCFilterItem* firstFit(const CaptureNode& node, const CWUVCFilter& filter)
{
    const auto& rows = filter.items();
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&node](const auto& item) { return rowFits(item, node); });
    return row == rows.end() ? nullptr : &*row;
}

} // namespace

QString nodePath(const V4l2Host& host, int number)
{
    return host.devices + QStringLiteral("/video%1").arg(number);
}

std::optional<CaptureNode> captureNode(const V4l2Host& host, int number)
{
    CaptureNode node;
    node.number = number;
    node.path = nodePath(host, number);
    const auto answer = capability(host, node.path);
    if (!answer || !givesPictures(*answer))
        return std::nullopt;
    node.name = withoutRepetition(text(answer->card));
    readUsbIds(host, &node);
    return node;
}

std::vector<int> nodeNumbers(const V4l2Host& host)
{
    const QString prefix = QStringLiteral("video");
    std::vector<int> numbers;
    const QStringList names =
        QDir(host.devices).entryList({prefix + QLatin1Char('*')}, QDir::Files | QDir::System);
    for (const QString& name : names) {
        bool isNumber = false;
        const int number = name.mid(prefix.size()).toInt(&isNumber);
        if (isNumber && number >= 0)
            numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::optional<_tag_VideoDeviceInfo> describe(const CaptureNode& node, const CWUVCFilter& filter)
{
    const CWUVCFilterItem* row = firstFit(node, filter);
    if (!row)
        return std::nullopt;
    _tag_VideoDeviceInfo info;
    info.type = row->type;
    info.index = node.number;
    info.name = row->model.empty() ? node.name : row->model;
    return info;
}

std::vector<_tag_VideoDeviceInfo> captureDevices(std::vector<CaptureNode> nodes,
                                                 const CWUVCFilter& filter)
{
    std::stable_sort(nodes.begin(), nodes.end(), [&filter](const auto& a, const auto& b) {
        return std::less<>()(firstFit(a, filter), firstFit(b, filter));
    });
    std::vector<_tag_VideoDeviceInfo> devices;
    for (const CaptureNode& node : nodes) {
        if (const auto device = describe(node, filter))
            devices.push_back(*device);
    }
    return devices;
}

} // namespace zolens
