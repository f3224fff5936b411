#include "PlaybackClock.h"

namespace zolens {
namespace {

/// Lateness that is no longer made up for.
constexpr std::chrono::milliseconds tolerableLateness(500);

} // namespace

PlaybackClock::PlaybackClock(double statedFrameDuration)
    : frameTime(plausibleFrameTime(statedFrameDuration))
{
}

StreamClock::time_point PlaybackClock::due(std::optional<double> mediaTime,
                                           StreamClock::time_point now)
{
    StreamClock::duration step = frameTime;
    if (mediaTime && lastMediaTime)
        step = frameTimeOf(*mediaTime - *lastMediaTime).value_or(frameTime);
    StreamClock::time_point time = lastDue ? *lastDue + step : now;
    if (now - time > tolerableLateness)
        time = now;
    lastDue = time;
    lastMediaTime = mediaTime;
    return time;
}

void PlaybackClock::restart()
{
    lastMediaTime.reset();
}

} // namespace zolens
