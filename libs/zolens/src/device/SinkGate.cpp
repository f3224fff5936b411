#include "SinkGate.h"

#include "frames/FrameSink.h"

namespace zolens {

QImage SinkGate::acquireFrame(const QSize& size)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return sink ? sink->acquireFrame(size) : QImage();
}

void SinkGate::deliver(QImage&& frame)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (sink)
        sink->deliver(std::move(frame));
}

void SinkGate::modesChanged()
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (sink)
        sink->modesChanged();
}

void SinkGate::shut()
{
    const std::lock_guard<std::mutex> lock(mutex);
    sink = nullptr;
}

} // namespace zolens
