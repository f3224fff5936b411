#pragma once

#include <QImage>
#include <QSize>

namespace zolens {

/// Where a device puts its frames. Called from the device's own thread.
class FrameSink
{
public:
    virtual ~FrameSink() = default;

    /// A writable image of Format_RGB32 for the next frame; null when no buffer is free or frames
    /// are not wanted now, and then the frame is to be dropped, before any decoding where that is
    /// possible. Calls count the frame as arrived.
    virtual QImage acquireFrame(const QSize& size) = 0;
    /// Hands the filled image on to the viewers. The caller must drop its own copy.
    virtual void deliver(QImage&& frame) = 0;
    /// The device took another format or size than it was asked for, or offers others now.
    virtual void modesChanged() {}
};

} // namespace zolens
