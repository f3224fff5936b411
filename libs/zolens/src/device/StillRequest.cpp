#include "StillRequest.h"

#include "WakeUp.h"

#include <utility>

namespace zolens {

QImage StillRequest::take(std::chrono::milliseconds patience)
{
    std::unique_lock<std::mutex> lock(mutex);
    if (ended)
        return {};
    pending = true;
    bell.ring();
    arrived.wait_for(lock, patience, [this] { return !pending; });
    pending = false;
    return std::exchange(picture, QImage());
}

void StillRequest::fulfil(const QImage& still)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (!pending)
            return;
        picture = still;
        pending = false;
    }
    arrived.notify_one();
}

void StillRequest::end()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        ended = true;
        pending = false;
    }
    arrived.notify_one();
}

} // namespace zolens
