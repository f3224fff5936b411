#pragma once

#include "device/LiveTiming.h"

/// For tests of what follows a clock.
namespace streamtimes {

/// Where they begin to count.
inline const zolens::StreamClock::time_point start =
    zolens::StreamClock::time_point() + std::chrono::seconds(1000);

inline long long milliseconds(zolens::StreamClock::duration duration)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
}

} // namespace streamtimes
