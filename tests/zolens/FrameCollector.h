#pragma once

#include "frames/FrameSink.h"

#include <QImage>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

/// A sink for tests of devices: keeps the first and the last frame and counts. It hands out as many
/// buffers as asked for, or none.
class FrameCollector final : public zolens::FrameSink
{
public:
    QImage acquireFrame(const QSize& size) override
    {
        ++asked;
        return refusing ? QImage() : QImage(size, QImage::Format_RGB32);
    }

    void deliver(QImage&& frame) override
    {
        if (look)
            look(frame);
        const std::lock_guard<std::mutex> lock(mutex);
        if (delivered == 0)
            first = frame;
        last = std::move(frame);
        ++delivered;
        arrived.notify_all();
    }

    void modesChanged() override { ++modeChanges; }

    int count() const
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return delivered;
    }
    QImage firstFrame() const
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return first;
    }
    QImage lastFrame() const
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return last;
    }
    /// Waits for that many frames from now on.
    bool waitForFrames(int frames, std::chrono::milliseconds patience = std::chrono::seconds(10))
    {
        std::unique_lock<std::mutex> lock(mutex);
        const int wanted = delivered + frames;
        return arrived.wait_for(lock, patience, [&] { return delivered >= wanted; });
    }

    /// Sees every frame, on the device's thread. To be set before the device starts.
    std::function<void(const QImage&)> look;
    std::atomic<bool> refusing{false};
    std::atomic<int> asked{0};
    std::atomic<int> modeChanges{0};

private:
    mutable std::mutex mutex;
    std::condition_variable arrived;
    QImage first;
    QImage last;
    int delivered = 0;
};
