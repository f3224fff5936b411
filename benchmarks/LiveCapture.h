#pragma once

#include "Arrivals.h"
#include "TimedV4l2.h"
#include "canvas/GraphicsView.h"
#include "frames/FrameDelivery.h"
#include "support/fakev4l2/CameraBench.h"

#include <mutex>

namespace bench {

/// Notes in which order numbered pictures come that start over after the last one. Thread-safe.
class FrameCount final
{
public:
    explicit FrameCount(int count) : period(count) {}

    void add(int number);
    void restart();
    int frames() const;
    /// Those that are missing between the first and the last.
    int lost() const;
    /// Whether none came after a later one, or twice.
    bool isOrdered() const;

private:
    const int period;
    mutable std::mutex mutex;
    int last = -1;
    int seen = 0;
    int missing = 0;
    bool ordered = true;
};

/// A camera of fake system calls that sends MJPEG, the library up to the delivery, and the view of
/// 1600 x 900 that paints every frame, as the program puts them together. Of the GUI thread.
class LiveCapture final
{
public:
    LiveCapture(const std::vector<QByteArray>& jpegs, const QSize& size, int framesPerSecond);
    ~LiveCapture();

    bool start();
    /// False when no frame comes in time.
    bool waitForFrames(int count) { return arrivals.waitFor(count); }

    /// Milliseconds from handing the last frame out of the driver to the end of its painting.
    double lastProcessing() const { return processing; }
    /// Processor time of this process in milliseconds, without that of the fake camera.
    double processorTime() const;

    GraphicsView view;
    FrameCount painted;
    std::atomic<bool> paused{false};
    zolens::FrameDelivery delivery;

private:
    void paint(const QImage& image);

    CameraBench machine;
    std::shared_ptr<TimedV4l2> system;
    std::unique_ptr<zolens::V4l2Camera> camera;
    Arrivals arrivals;
    double processing = 0.0;
};

} // namespace bench
