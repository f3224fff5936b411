#pragma once

#include "FramePool.h"
#include "FrameSink.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

namespace zolens {

/// Passes frames on to the viewers from a thread of its own. At most two frames are on their way to
/// or shown by the viewers at one time; while they are slower than the device, the newest frame
/// waits and replaces an older one that waits, and it goes out as soon as a buffer comes back. So
/// memory stays that of the pool, and a viewer that was busy gets the newest frame next.
class FrameDelivery : public FrameSink
{
public:
    using Viewer = std::function<void(const QImage&)>;
    using Tap = std::function<void(const QImage&, std::chrono::steady_clock::time_point arrival)>;

    /// `viewer` is called on the delivery thread. While `paused` is true nothing is delivered.
    /// `modesNotice` is called on the device's thread.
    FrameDelivery(Viewer viewer, const std::atomic<bool>& paused,
                  std::function<void()> modesNotice = {});
    ~FrameDelivery() override;

    /// False when the system has not left what it takes: then no viewer gets anything.
    bool isRunning() const;

    QImage acquireFrame(const QSize& size) override;
    void deliver(QImage&& frame) override;
    void modesChanged() override;

    /// Lets every frame that the device delivers while not paused through `tap` too, also those
    /// that a slow viewer never gets. The tap is called on the device's thread, after the frame is
    /// on its way to the viewers, and must not keep the image. It begins with the last frame that
    /// the viewers got, if any, within this call, as if that arrived now. No call is under way when
    /// this returns.
    void setTap(Tap tap);

    /// Frames per second that arrived from the device over about the last second.
    float frameRate() const;
    /// Frames that found no buffer or were replaced while they waited.
    quint64 droppedFrames() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace zolens
