#include "Outcome.h"

namespace zolens {

void Outcome::settle(bool success)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (result)
            return;
        result = success;
    }
    settled.notify_all();
}

bool Outcome::isSettled() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return result.has_value();
}

std::optional<bool> Outcome::await(std::chrono::milliseconds patience) const
{
    std::unique_lock<std::mutex> lock(mutex);
    settled.wait_for(lock, patience, [this] { return result.has_value(); });
    return result;
}

} // namespace zolens
