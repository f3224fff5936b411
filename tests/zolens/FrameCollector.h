#pragma once

#include "frames/FrameSink.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

/// A sink for tests of devices: keeps the newest frames and counts them.
class FrameCollector final : public zolens::FrameSink
{
public:
    QImage acquireFrame(const QSize& size) override
    {
        const std::lock_guard lock(mutex);
        ++calls;
        return refusing ? QImage() : QImage(size, QImage::Format_RGB32);
    }

    void deliver(QImage&& frame) override
    {
        {
            const std::lock_guard lock(mutex);
            ++calls;
            ++delivered;
            if (delivered == 1) {
                firstFrame = frame;
            }
            newestFrame = std::move(frame);
        }
        changed.notify_all();
    }

    /// Waits for so many frames from now on.
    bool waitForFrames(int count)
    {
        std::unique_lock lock(mutex);
        const int wanted = delivered + count;
        return changed.wait_for(lock, std::chrono::seconds(10),
                                [this, wanted] { return delivered >= wanted; });
    }

    QImage first() const
    {
        const std::lock_guard lock(mutex);
        return firstFrame;
    }

    QImage newest() const
    {
        const std::lock_guard lock(mutex);
        return newestFrame;
    }

    int deliveredFrames() const
    {
        const std::lock_guard lock(mutex);
        return delivered;
    }

    /// Every touch of the sink.
    int touches() const
    {
        const std::lock_guard lock(mutex);
        return calls;
    }

    void refuse(bool on)
    {
        const std::lock_guard lock(mutex);
        refusing = on;
    }

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    QImage firstFrame;
    QImage newestFrame;
    int delivered = 0;
    int calls = 0;
    bool refusing = false;
};
