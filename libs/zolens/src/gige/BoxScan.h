#pragma once

#include "BoxList.h"
#include "device/WakeUp.h"

#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace zolens {

class BroadcastSocket;

/// Looks for network boxes on a thread of its own as long as it exists, by asking everybody again
/// and again. It ends at once.
class BoxScan final
{
public:
    explicit BoxScan(std::chrono::milliseconds interval);
    ~BoxScan();
    BoxScan(const BoxScan&) = delete;
    BoxScan& operator=(const BoxScan&) = delete;

    /// False when the system has not left what it takes.
    bool isRunning() const { return thread.joinable(); }
    /// Those found so far that still answer. Thread-safe.
    std::vector<_tag_VideoDeviceInfo> boxes() const;

private:
    using Clock = std::chrono::steady_clock;

    void run();
    void collectAnswers(BroadcastSocket* socket, Clock::time_point end);
    void takeAnswer(const std::uint8_t* data, std::size_t size);

    const std::chrono::milliseconds interval;
    WakeUp wakeUp;
    mutable std::mutex mutex;
    BoxList list;
    std::thread thread;
};

} // namespace zolens
