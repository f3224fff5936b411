#include "StreamTiming.h"

#include <algorithm>

namespace zolens {
namespace {

using Duration = StreamClock::duration;
using std::chrono::milliseconds;

constexpr milliseconds shortestPatience(2000);
constexpr milliseconds longestPatience(60000);
constexpr int patienceInFrames = 10;
/// A new distance between frames counts by one part in this many.
constexpr int smoothing = 8;

constexpr milliseconds fallbackFrameTime(40);
constexpr milliseconds shortestFrameTime(1);
constexpr milliseconds longestFrameTime(10000);
/// Lateness that is no longer made up for.
constexpr milliseconds tolerableLateness(500);

constexpr milliseconds shortestPause(250);
constexpr milliseconds longestPause(8000);

Duration fromSeconds(double seconds)
{
    return std::chrono::round<Duration>(std::chrono::duration<double>(seconds));
}

Duration plausibleFrameTime(double seconds)
{
    if (!(seconds > 0.0) || seconds > 10.0)
        return fallbackFrameTime;
    return std::max<Duration>(fromSeconds(seconds), shortestFrameTime);
}

} // namespace

FrameWatchdog::FrameWatchdog(StreamClock::time_point firstFrameDeadline, double statedFrameDuration)
    : due(firstFrameDeadline),
      frameTime(plausibleFrameTime(statedFrameDuration))
{
}

void FrameWatchdog::frameArrived(StreamClock::time_point now)
{
    if (lastFrame)
        frameTime += (now - *lastFrame - frameTime) / smoothing;
    lastFrame = now;
    due =
        now + std::clamp<Duration>(frameTime * patienceInFrames, shortestPatience, longestPatience);
}

PlaybackClock::PlaybackClock(double statedFrameDuration)
    : frameTime(plausibleFrameTime(statedFrameDuration))
{
}

StreamClock::time_point PlaybackClock::due(std::optional<double> mediaTime,
                                           StreamClock::time_point now)
{
    Duration step = frameTime;
    if (mediaTime && lastMediaTime) {
        const double distance = *mediaTime - *lastMediaTime;
        if (distance > 0.0 && distance <= std::chrono::duration<double>(longestFrameTime).count())
            step = fromSeconds(distance);
    }
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

StreamClock::duration ReconnectPause::next(StreamClock::duration lastConnection)
{
    if (lastConnection >= longestPause)
        pause = {};
    pause = std::clamp<Duration>(pause * 2, shortestPause, longestPause);
    return pause;
}

} // namespace zolens
