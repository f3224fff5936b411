#include "WakeUp.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>

namespace zolens {
namespace {

timespec timeUntil(WakeUp::Clock::time_point time)
{
    using namespace std::chrono;
    const auto left = std::max(time - WakeUp::Clock::now(), WakeUp::Clock::duration::zero());
    return {duration_cast<seconds>(left).count(), nanoseconds(left % seconds(1)).count()};
}

} // namespace

WakeUp::WakeUp() : file(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

WakeUp::~WakeUp()
{
    close(file);
}

void WakeUp::ring()
{
    eventfd_write(file, 1);
}

void WakeUp::clear()
{
    eventfd_t rings = 0;
    eventfd_read(file, &rings);
}

void WakeUp::cancel()
{
    cancelled = true;
    ring();
}

bool WakeUp::sleepUntil(Clock::time_point time)
{
    while (!cancelled && Clock::now() < time) {
        const timespec left = timeUntil(time);
        pollfd bell = {file, POLLIN, 0};
        if (ppoll(&bell, 1, &left, nullptr) > 0 && !cancelled)
            clear();
    }
    return !cancelled;
}

} // namespace zolens
