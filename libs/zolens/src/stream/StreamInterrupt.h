#pragma once

#include "device/LiveTiming.h"

namespace zolens {

class WakeUp;

/// Ends blocking calls of a stream's worker: at once when the worker is cancelled, or at a deadline
/// that it sets itself. Used on the worker's thread only.
class StreamInterrupt final
{
public:
    /// `wakeUp` tells of the cancelling, and must outlive this.
    explicit StreamInterrupt(WakeUp& wakeUp) : wake(wakeUp) {}

    /// Later calls end at that time, and isExpired() tells so until the next deadline is set.
    void setDeadline(StreamClock::time_point time);
    bool isExpired() const { return expired; }

    /// From now on only this deadline counts, not the cancelling: for a last word to the server.
    void beginClosing(StreamClock::duration grace);

    /// Whether a blocking call has to return now. Cheap; called many times a second.
    bool isDue();
    /// False when the worker was cancelled meanwhile.
    bool sleepFor(StreamClock::duration time);

private:
    WakeUp& wake;
    StreamClock::time_point deadline = StreamClock::time_point::max();
    bool expired = false;
    bool closing = false;
};

} // namespace zolens
