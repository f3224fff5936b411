#pragma once

#include <chrono>
#include <optional>

namespace zolens {

using StreamClock = std::chrono::steady_clock;

/// A time between two frames, if it can be one: above zero and ten seconds at most.
std::optional<StreamClock::duration> frameTimeOf(double seconds);

/// The same for one that a source states: 40 ms where it cannot be one, and never below 1 ms.
StreamClock::duration plausibleFrameTime(double seconds);

/// Milliseconds from now on, as poll() takes them; 0 for a time that is past.
int pollTimeUntil(StreamClock::time_point time);

/// Tells by when the next frame of a live source has to be there: within the longer of two seconds
/// and ten frame times. Until two frames have come, the frame time is the one that the source
/// states.
class FrameWatchdog final
{
public:
    FrameWatchdog(StreamClock::time_point firstFrameDeadline, double statedFrameDuration);

    /// For a device that gives its first frame as soon as any other.
    static FrameWatchdog startedAt(StreamClock::time_point now, double statedFrameDuration);

    void frameArrived(StreamClock::time_point now);
    StreamClock::time_point deadline() const { return due; }

private:
    StreamClock::duration patience() const;

    StreamClock::time_point due;
    StreamClock::duration frameTime;
    std::optional<StreamClock::time_point> lastFrame;
};

/// The pauses before a lost source is tried again: doubling from a quarter of a second up to eight,
/// and short again after a connection that lasted.
class ReconnectPause final
{
public:
    StreamClock::duration next(StreamClock::duration lastConnection);

private:
    StreamClock::duration pause = {};
};

} // namespace zolens
