#include "StreamInterrupt.h"

namespace zolens {

void StreamInterrupt::cancel()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        cancelled = true;
    }
    wake.notify_all();
}

void StreamInterrupt::setDeadline(Clock::time_point time)
{
    closing = false;
    expired = false;
    deadline = time.time_since_epoch().count();
}

void StreamInterrupt::beginClosing(Clock::duration grace)
{
    setDeadline(Clock::now() + grace);
    closing = true;
}

bool StreamInterrupt::isDue()
{
    if (cancelled && !closing)
        return true;
    if (Clock::now().time_since_epoch().count() >= deadline)
        expired = true;
    return expired;
}

bool StreamInterrupt::sleepUntil(Clock::time_point time)
{
    std::unique_lock<std::mutex> lock(mutex);
    return !wake.wait_until(lock, time, [this] { return cancelled.load(); });
}

} // namespace zolens
