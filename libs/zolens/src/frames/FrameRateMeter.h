#pragma once

#include <chrono>
#include <deque>

namespace zolens {

/// Counts frames per second over about the last second. Frames that come more slowly than once a
/// second are measured by the time between the last two. Not thread-safe.
class FrameRateMeter final
{
public:
    using Clock = std::chrono::steady_clock;

    void frameArrived(Clock::time_point now);
    /// Frames per second; 0 before the second frame and once frames stay away.
    float rate(Clock::time_point now) const;

private:
    std::deque<Clock::time_point> arrivals; ///< Oldest first, at most those of the last second.
};

} // namespace zolens
