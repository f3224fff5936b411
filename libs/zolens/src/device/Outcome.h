#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace zolens {

/// A yes or no that one thread waits for and another decides, once. Thread-safe.
class Outcome final
{
public:
    /// Only the first call counts.
    void settle(bool success);
    bool isSettled() const;
    /// Waits for the decision; nothing when it does not come in time.
    std::optional<bool> await(std::chrono::milliseconds patience) const;

private:
    mutable std::mutex mutex;
    mutable std::condition_variable settled;
    std::optional<bool> result;
};

} // namespace zolens
