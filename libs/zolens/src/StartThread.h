#pragma once

#include <system_error>
#include <thread>
#include <utility>

namespace zolens {

/// A thread that does the work. Where the system has none left, it is not joinable, and the work is
/// let go of undone.
template <typename Work>
std::thread startThread(Work&& work)
{
    try {
        return std::thread(std::forward<Work>(work));
    } catch (const std::system_error&) {
        return {};
    }
}

} // namespace zolens
