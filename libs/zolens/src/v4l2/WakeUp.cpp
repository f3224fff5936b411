#include "WakeUp.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace zolens {

using Clock = std::chrono::steady_clock;

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

bool WakeUp::sleepFor(std::chrono::milliseconds time)
{
    const auto end = Clock::now() + time;
    while (!cancelled && Clock::now() < end) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        pollfd bell = {file, POLLIN, 0};
        if (poll(&bell, 1, int(left.count())) > 0 && !cancelled)
            clear();
    }
    return !cancelled;
}

} // namespace zolens
