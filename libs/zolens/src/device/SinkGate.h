#pragma once

#include <QImage>
#include <QSize>

#include <mutex>

namespace zolens {

class FrameSink;

/// Stands between a worker and the sink of frames. Once it is shut, the sink is not touched again,
/// however long the worker goes on. Thread-safe.
class SinkGate final
{
public:
    explicit SinkGate(FrameSink* frameSink) : sink(frameSink) {}

    QImage acquireFrame(const QSize& size);
    void deliver(QImage&& frame);
    void modesChanged();
    /// Waits for a call that is under way.
    void shut();

private:
    std::mutex mutex;
    FrameSink* sink;
};

} // namespace zolens
