#pragma once

#include <atomic>
#include <chrono>

namespace zolens {

/// Gets a worker out of its waiting: to look for something new, or to end for good. Thread-safe.
class WakeUp final
{
public:
    using Clock = std::chrono::steady_clock;

    WakeUp();
    ~WakeUp();
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;

    /// Ready for reading after a ring.
    int descriptor() const { return file; }
    void ring();
    /// Takes back all rings so far.
    void clear();

    void cancel();
    bool isCancelled() const { return cancelled; }
    /// False when it was cancelled meanwhile. Takes back the rings that come in that time.
    bool sleepUntil(Clock::time_point time);
    bool sleepFor(Clock::duration time) { return sleepUntil(Clock::now() + time); }

private:
    const int file;
    std::atomic<bool> cancelled{false};
};

} // namespace zolens
