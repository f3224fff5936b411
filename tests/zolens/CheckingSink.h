#pragma once

#include "frames/FrameSink.h"

#include <QImage>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

/// Passes every frame through a check, on the camera's thread, and keeps the first complaint.
class CheckingSink final : public zolens::FrameSink
{
public:
    /// Empty when the frame is as it should be.
    using Check = std::function<QString(const QImage&)>;

    explicit CheckingSink(Check frameCheck) : check(std::move(frameCheck)) {}

    QImage acquireFrame(const QSize& size) override { return QImage(size, QImage::Format_RGB32); }

    void deliver(QImage&& frame) override
    {
        const QString complaint = check(frame);
        const std::lock_guard<std::mutex> lock(mutex);
        if (problem.isEmpty() && !complaint.isEmpty())
            problem = QStringLiteral("frame %1: ").arg(delivered) + complaint;
        ++delivered;
        arrived.notify_all();
    }

    /// Waits for that many frames from now on.
    bool waitForFrames(int frames, std::chrono::milliseconds patience)
    {
        std::unique_lock<std::mutex> lock(mutex);
        const int wanted = delivered + frames;
        return arrived.wait_for(lock, patience, [&] { return delivered >= wanted; });
    }

    QString complaint()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return problem;
    }

private:
    const Check check;
    std::mutex mutex;
    std::condition_variable arrived;
    QString problem;
    int delivered = 0;
};
