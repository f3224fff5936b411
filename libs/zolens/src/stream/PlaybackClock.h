#pragma once

#include "device/LiveTiming.h"

#include <optional>

namespace zolens {

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

} // namespace zolens
