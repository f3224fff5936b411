#pragma once

#include <QImage>
#include <QSize>

#include <memory>

namespace zolens {

/// A fixed number of picture buffers that go around between a device thread and the viewers.
/// A buffer goes out as a QImage of Format_RGB32 and comes back when the last copy of that image is
/// gone, on whichever thread that is. Buffers live on as long as an image uses them, also after
/// the pool is gone. Thread-safe.
class FramePool
{
public:
    explicit FramePool(int capacity);
    ~FramePool();

    /// A writable image of that size, with undefined content; null when all buffers are out or
    /// memory is short. Buffers of another size are let go as they come back.
    QImage acquire(const QSize& size);

    int capacity() const;
    /// Buffers that are out.
    int inUse() const;

private:
    class Shared;
    std::shared_ptr<Shared> shared;
};

} // namespace zolens
