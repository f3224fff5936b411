#include "BoxList.h"

#include "DeviceNames.h"

#include <QHash>
#include <QStringList>

#include <arpa/inet.h>

#include <algorithm>
#include <array>

namespace zolens {
namespace {

/// What a box may be called, the shortest first.
QStringList possibleNames(const NetworkBox& box)
{
    QStringList names(deviceName(box.vendor, box.model, QStringLiteral("GigE Vision")));
    for (const QString& part : {box.userName, box.serialNumber}) {
        if (!part.isEmpty())
            names << QStringLiteral("%1 (%2)").arg(names.first(), part);
    }
    names.removeDuplicates();
    return names;
}

std::string textOf(std::uint32_t address)
{
    const in_addr inNetworkOrder = {htonl(address)};
    std::array<char, INET_ADDRSTRLEN> text;
    inet_ntop(AF_INET, &inNetworkOrder, text.data(), text.size());
    return text.data();
}

} // namespace

void BoxList::heard(const NetworkBox& box)
{
    if (entries.size() < mostBoxes || entries.count(box.address) > 0)
        entries[box.address] = {box};
}

void BoxList::endRound()
{
    for (auto it = entries.begin(); it != entries.end();) {
        if (it->second.silentRounds++ < patience)
            ++it;
        else
            it = entries.erase(it);
    }
}

std::vector<_tag_VideoDeviceInfo> BoxList::devices() const
{
    QHash<QString, int> claims;
    for (const auto& [address, entry] : entries) {
        for (const QString& name : possibleNames(entry.box))
            ++claims[name];
    }
    std::vector<_tag_VideoDeviceInfo> devices;
    for (const auto& [address, entry] : entries) {
        const QStringList names = possibleNames(entry.box);
        const auto ownName = std::find_if(names.begin(), names.end(),
                                          [&](const QString& name) { return claims[name] == 1; });
        _tag_VideoDeviceInfo device;
        device.type = CWDevice_NetworkBox;
        device.index = std::int32_t(devices.size());
        device.name = (ownName == names.end() ? names.first() : *ownName).toStdString();
        device.address = textOf(address);
        devices.push_back(std::move(device));
    }
    return devices;
}

} // namespace zolens
