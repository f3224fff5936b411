#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace zolens {

/// Asks everybody on the networks of this machine. Answers are heard that come to any of its
/// addresses or to everybody. Of one thread; only waiting takes time.
class BroadcastSocket final
{
public:
    using Receiver = std::function<void(const std::uint8_t* data, std::size_t size)>;

    BroadcastSocket() = default;
    ~BroadcastSocket();
    BroadcastSocket(const BroadcastSocket&) = delete;
    BroadcastSocket& operator=(const BroadcastSocket&) = delete;

    /// To that port of all, once from each IPv4 address that this machine has now.
    void send(const std::uint8_t* data, std::size_t size, std::uint16_t port);
    /// Waits for that time, but no longer than until something comes or `bell` becomes readable.
    void receive(int bell, std::chrono::milliseconds patience, const Receiver& receiver);

private:
    int file = -1; ///< Below 0 while the system has left none.
};

} // namespace zolens
