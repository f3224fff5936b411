#pragma once

#include <chrono>
#include <deque>

namespace zolens {

/// How long somebody may wait who must not wait long: at most so much in any such span of time.
/// What is spent comes back when the span has passed.
class WaitBudget final
{
public:
    using Clock = std::chrono::steady_clock;

    WaitBudget(Clock::duration mostTime, Clock::duration timeSpan);

    /// Never negative.
    Clock::duration left(Clock::time_point now);
    void spend(Clock::time_point from, Clock::time_point to);

private:
    struct Wait
    {
        Clock::time_point end;
        Clock::duration length;
    };

    const Clock::duration most;
    const Clock::duration span;
    std::deque<Wait> waits; ///< Of the last span, the oldest first.
};

} // namespace zolens
