#pragma once

#include <QImage>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zolens {

class WakeUp;

/// Hands the next frame from a worker to somebody who waits for it, and rings for the worker then.
/// Thread-safe.
class StillRequest final
{
public:
    explicit StillRequest(WakeUp& workersBell) : bell(workersBell) {}

    /// Waits for the next frame; null when none comes in time.
    QImage take(std::chrono::milliseconds patience);

    /// Whether somebody waits.
    bool isPending() const { return pending; }
    void fulfil(const QImage& still);
    /// Sends away whoever waits, and everybody later.
    void end();

private:
    WakeUp& bell;
    std::mutex mutex;
    std::condition_variable arrived;
    std::atomic<bool> pending{false};
    QImage picture;
    bool ended = false;
};

} // namespace zolens
