#include "NetworkBox.h"

#include "VisionLog.h"
#include "device/WakeUp.h"

#include <QHostAddress>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zolens {
namespace {

constexpr std::chrono::milliseconds controlPause(250);
constexpr in_port_t controlPort = 3956;

/// The address of this machine from which the system would reach the other one. Nothing is sent.
AravisPointer<GInetAddress> ownAddressTowards(const in_addr& other)
{
    sockaddr_in place = {};
    place.sin_family = AF_INET;
    place.sin_port = htons(controlPort);
    place.sin_addr = other;
    auto* const address = reinterpret_cast<sockaddr*>(&place);
    socklen_t length = sizeof(place);
    const int probe = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool found =
        connect(probe, address, length) == 0 && getsockname(probe, address, &length) == 0;
    close(probe);
    if (!found)
        return nullptr;
    return AravisPointer<GInetAddress>(g_inet_address_new_from_bytes(
        reinterpret_cast<const guint8*>(&place.sin_addr), G_SOCKET_FAMILY_IPV4));
}

AravisPointer<ArvDevice> reach(const QString& text)
{
    const QHostAddress given(text);
    if (given.protocol() != QAbstractSocket::IPv4Protocol)
        return nullptr;
    const in_addr number = {htonl(given.toIPv4Address())};
    const auto own = ownAddressTowards(number);
    if (!own) {
        qCInfo(visionLog, "%s cannot be reached: no way leads there", qPrintable(text));
        return nullptr;
    }
    const AravisPointer<GInetAddress> address(g_inet_address_new_from_bytes(
        reinterpret_cast<const guint8*>(&number), G_SOCKET_FAMILY_IPV4));
    AravisError error;
    const std::lock_guard<std::mutex> lock(openingMutex);
    AravisPointer<ArvDevice> device(arv_gv_device_new(own.get(), address.get(), error.out()));
    if (!device)
        qCInfo(visionLog, "%s cannot be reached: %s", qPrintable(text), error.text());
    return device;
}

bool control(ArvDevice* device, StreamClock::time_point deadline, WakeUp& wake)
{
    ArvGvDevice* const box = ARV_GV_DEVICE(device);
    while (!arv_gv_device_is_controller(box)) {
        if (wake.isCancelled() || StreamClock::now() > deadline)
            return false;
        AravisError error;
        if (!arv_gv_device_take_control(box, error.out()))
            wake.sleepFor(controlPause);
    }
    return !wake.isCancelled();
}

} // namespace

AravisPointer<ArvCamera> connectToBox(const QString& address, StreamClock::time_point deadline,
                                      WakeUp& wake)
{
    const auto device = reach(address);
    if (!device)
        return nullptr;
    if (!control(device.get(), deadline, wake)) {
        qCInfo(visionLog, "%s is controlled by somebody else", qPrintable(address));
        return nullptr;
    }
    AravisError error;
    return AravisPointer<ArvCamera>(arv_camera_new_with_device(device.get(), error.out()));
}

} // namespace zolens
