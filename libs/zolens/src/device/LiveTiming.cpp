#include "LiveTiming.h"

#include <algorithm>
#include <limits>

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
constexpr double longestFrameTime = 10.0; // seconds

constexpr milliseconds shortestPause(250);
constexpr milliseconds longestPause(8000);

} // namespace

std::optional<Duration> frameTimeOf(double seconds)
{
    if (!(seconds > 0.0) || seconds > longestFrameTime)
        return std::nullopt;
    return std::chrono::round<Duration>(std::chrono::duration<double>(seconds));
}

StreamClock::duration plausibleFrameTime(double seconds)
{
    return std::max<Duration>(frameTimeOf(seconds).value_or(fallbackFrameTime), shortestFrameTime);
}

int pollTimeUntil(StreamClock::time_point time)
{
    const auto left = std::chrono::ceil<milliseconds>(time - StreamClock::now()).count();
    return int(std::clamp<milliseconds::rep>(left, 0, std::numeric_limits<int>::max()));
}

FrameWatchdog::FrameWatchdog(StreamClock::time_point firstFrameDeadline, double statedFrameDuration)
    : due(firstFrameDeadline),
      frameTime(plausibleFrameTime(statedFrameDuration))
{
}

FrameWatchdog FrameWatchdog::startedAt(StreamClock::time_point now, double statedFrameDuration)
{
    FrameWatchdog watchdog(now, statedFrameDuration);
    watchdog.due += watchdog.patience();
    return watchdog;
}

void FrameWatchdog::frameArrived(StreamClock::time_point now)
{
    if (lastFrame)
        frameTime += (now - *lastFrame - frameTime) / smoothing;
    lastFrame = now;
    due = now + patience();
}

StreamClock::duration FrameWatchdog::patience() const
{
    return std::clamp<Duration>(frameTime * patienceInFrames, shortestPatience, longestPatience);
}

StreamClock::duration ReconnectPause::next(StreamClock::duration lastConnection)
{
    if (lastConnection >= longestPause)
        pause = {};
    pause = std::clamp<Duration>(pause * 2, shortestPause, longestPause);
    return pause;
}

} // namespace zolens
