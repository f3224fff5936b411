#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zolens {

/// Ends blocking calls of a stream's worker: at once when the stream is cancelled from outside, or
/// at a deadline that the worker sets. Thread-safe; shared by the camera and its worker.
class StreamInterrupt final
{
public:
    using Clock = std::chrono::steady_clock;

    /// Ends the current and all later calls, for good.
    void cancel();
    bool isCancelled() const { return cancelled; }

    /// Later calls end at that time, and isExpired() tells so until the next deadline is set.
    void setDeadline(Clock::time_point time);
    bool isExpired() const { return expired; }

    /// From now on only this deadline counts, not the cancelling: for a last word to the server.
    void beginClosing(Clock::duration grace);

    /// Whether a blocking call has to return now. Cheap; called many times a second.
    bool isDue();
    /// Sleeps until then. False when the stream was cancelled meanwhile.
    bool sleepUntil(Clock::time_point time);

private:
    std::mutex mutex;
    std::condition_variable wake;
    std::atomic<bool> cancelled{false};
    std::atomic<bool> expired{false};
    std::atomic<bool> closing{false};
    std::atomic<Clock::rep> deadline{Clock::time_point::max().time_since_epoch().count()};
};

} // namespace zolens
