#include "FrameRateMeter.h"

namespace zolens {

namespace {

constexpr std::chrono::seconds window{1};
constexpr std::size_t fewest = 2; ///< A time between frames needs two of them.

} // namespace

void FrameRateMeter::frameArrived(Clock::time_point now)
{
    arrivals.push_back(now);
    while (arrivals.size() > fewest && now - arrivals.front() > window)
        arrivals.pop_front();
}

float FrameRateMeter::rate(Clock::time_point now) const
{
    if (arrivals.size() < fewest)
        return 0.0F;
    const std::chrono::duration<float> span = arrivals.back() - arrivals.front();
    const std::chrono::duration<float> interval = span / static_cast<float>(arrivals.size() - 1);
    const std::chrono::duration<float> silence = now - arrivals.back();
    if (interval.count() <= 0.0F || silence > window + 2 * interval)
        return 0.0F;
    return 1.0F / interval.count();
}

} // namespace zolens
