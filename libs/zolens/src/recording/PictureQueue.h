#pragma once

#include "Picture.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace zolens {

/// Pictures on their way to the encoder, bounded in number and memory. Thread-safe.
class PictureQueue final
{
public:
    using Clock = std::chrono::steady_clock;

    /// Whether one more of that size may be put now, by the one thread that puts.
    bool hasRoomFor(const QSize& size) const;
    /// Closed queues let the picture go.
    void put(Picture picture);
    /// Waits for the oldest picture; null when none comes in that time, and when the queue is over.
    Picture take(Clock::duration patience);
    /// Whether it is closed and empty, or closed and due to end.
    bool isOver() const;
    /// Takes no more pictures. Those that wait may be taken until `end`.
    void close(Clock::time_point end);

private:
    bool isEnded() const;

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Picture> pictures;
    bool closed = false;
    Clock::time_point end = Clock::time_point::max();
};

} // namespace zolens
