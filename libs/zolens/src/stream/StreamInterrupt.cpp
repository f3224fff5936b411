#include "StreamInterrupt.h"

#include "device/WakeUp.h"

namespace zolens {

void StreamInterrupt::setDeadline(StreamClock::time_point time)
{
    closing = false;
    expired = false;
    deadline = time;
}

void StreamInterrupt::beginClosing(StreamClock::duration grace)
{
    setDeadline(StreamClock::now() + grace);
    closing = true;
}

bool StreamInterrupt::isDue()
{
    if (wake.isCancelled() && !closing)
        return true;
    if (StreamClock::now() >= deadline)
        expired = true;
    return expired;
}

bool StreamInterrupt::sleepFor(StreamClock::duration time)
{
    return wake.sleepFor(time);
}

} // namespace zolens
