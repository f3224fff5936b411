#pragma once

#include <chrono>
#include <optional>

namespace zolens {

using StreamClock = std::chrono::steady_clock;

/// Tells by when the next frame of a live source has to be there: within the longer of two seconds
/// and ten frame times. Until two frames have come, the frame time is the one that the source
/// states.
class FrameWatchdog final
{
public:
    FrameWatchdog(StreamClock::time_point firstFrameDeadline, double statedFrameDuration);

    void frameArrived(StreamClock::time_point now);
    StreamClock::time_point deadline() const { return due; }

private:
    StreamClock::time_point due;
    StreamClock::duration frameTime;
    std::optional<StreamClock::time_point> lastFrame;
};

/// Tells when each frame of a recording is due, so that it plays in real time. Gaps in the time
/// stamps and a reader that falls behind do not upset it.
class PlaybackClock final
{
public:
    explicit PlaybackClock(double statedFrameDuration);

    /// `mediaTime` is the frame's time stamp in seconds; without one it follows the frame before.
    StreamClock::time_point due(std::optional<double> mediaTime, StreamClock::time_point now);
    /// The next frame follows the last one, whatever its time stamp.
    void restart();

private:
    StreamClock::duration frameTime;
    std::optional<StreamClock::time_point> lastDue;
    std::optional<double> lastMediaTime;
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
