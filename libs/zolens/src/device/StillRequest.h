#pragma once

#include <QImage>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zolens {

/// Hands the next frame from a worker to somebody who waits for it. Thread-safe.
class StillRequest final
{
public:
    /// Waits for the next frame; null when none comes in time.
    QImage take(std::chrono::milliseconds patience);

    /// Whether somebody waits.
    bool isPending() const { return pending; }
    void fulfil(const QImage& still);

private:
    std::mutex mutex;
    std::condition_variable arrived;
    std::atomic<bool> pending{false};
    QImage picture;
};

} // namespace zolens
