#include "BroadcastSocket.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <memory>
#include <set>

namespace zolens {
namespace {

constexpr std::size_t longestPacket = 1500;

sockaddr_in endpoint(in_addr_t address, std::uint16_t port)
{
    sockaddr_in end = {};
    end.sin_family = AF_INET;
    end.sin_addr.s_addr = address;
    end.sin_port = htons(port);
    return end;
}

/// Whether there are neighbours whom a broadcast reaches. The loopback needs no flag for that.
bool reachesNeighbours(const ifaddrs& interface)
{
    return interface.ifa_addr && interface.ifa_addr->sa_family == AF_INET &&
           (interface.ifa_flags & IFF_UP) && (interface.ifa_flags & (IFF_BROADCAST | IFF_LOOPBACK));
}

std::set<in_addr_t> ownAddresses()
{
    std::set<in_addr_t> addresses;
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0)
        return addresses;
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(list, freeifaddrs);
    for (const ifaddrs* it = list; it; it = it->ifa_next) {
        if (reachesNeighbours(*it))
            addresses.insert(reinterpret_cast<const sockaddr_in*>(it->ifa_addr)->sin_addr.s_addr);
    }
    return addresses;
}

/// Below 0 when there is none. Bound to no address: one that is does not hear broadcasts.
int openSocket()
{
    const int file = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const int on = 1;
    if (file >= 0 && setsockopt(file, SOL_SOCKET, SO_BROADCAST, &on, sizeof on) != 0) {
        close(file);
        return -1;
    }
    return file;
}

/// The address decides by which interface the broadcast leaves.
void sendFrom(in_addr_t address, int file, iovec* data, std::uint16_t port)
{
    sockaddr_in everybody = endpoint(INADDR_BROADCAST, port);
    in_pktinfo route = {};
    route.ipi_spec_dst.s_addr = address;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof route)> control = {};
    msghdr message = {};
    message.msg_name = &everybody;
    message.msg_namelen = sizeof everybody;
    message.msg_iov = data;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = IPPROTO_IP;
    header->cmsg_type = IP_PKTINFO;
    header->cmsg_len = CMSG_LEN(sizeof route);
    std::memcpy(CMSG_DATA(header), &route, sizeof route);
    sendmsg(file, &message, 0);
}

} // namespace

BroadcastSocket::~BroadcastSocket()
{
    if (file >= 0)
        close(file);
}

void BroadcastSocket::send(const std::uint8_t* data, std::size_t size, std::uint16_t port)
{
    if (file < 0)
        file = openSocket();
    iovec content = {const_cast<std::uint8_t*>(data), size};
    for (const in_addr_t address : ownAddresses())
        sendFrom(address, file, &content, port);
}

void BroadcastSocket::receive(int bell, std::chrono::milliseconds patience,
                              const Receiver& receiver)
{
    std::array<pollfd, 2> waiting = {{{bell, POLLIN, 0}, {file, POLLIN, 0}}};
    if (poll(waiting.data(), waiting.size(), int(patience.count())) <= 0 || waiting[1].revents == 0)
        return;
    std::array<std::uint8_t, longestPacket> packet;
    const ssize_t size = recv(file, packet.data(), packet.size(), 0);
    if (size >= 0)
        receiver(packet.data(), std::size_t(size));
}

} // namespace zolens
