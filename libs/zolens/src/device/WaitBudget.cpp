#include "WaitBudget.h"

#include <algorithm>
#include <numeric>

namespace zolens {

WaitBudget::WaitBudget(Clock::duration mostTime, Clock::duration timeSpan)
    : most(mostTime),
      span(timeSpan)
{
}

WaitBudget::Clock::duration WaitBudget::left(Clock::time_point now)
{
    while (!waits.empty() && waits.front().end + span <= now)
        waits.pop_front();
    const auto spent =
        std::accumulate(waits.begin(), waits.end(), Clock::duration(0),
                        [](Clock::duration sum, const Wait& wait) { return sum + wait.length; });
    return std::max(Clock::duration(0), most - spent);
}

void WaitBudget::spend(Clock::time_point from, Clock::time_point to)
{
    waits.push_back({to, to - from});
}

} // namespace zolens
