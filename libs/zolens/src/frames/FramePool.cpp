#include "FramePool.h"

#include <limits>
#include <mutex>
#include <new>
#include <vector>

namespace zolens {

namespace {

/// Rows begin on cache lines, so that conversions may use the widest vector instructions.
constexpr std::size_t alignment = 64;
constexpr int bytesPerPixel = 4;

struct AlignedDelete
{
    void operator()(uchar* memory) const
    {
        ::operator delete (memory, std::align_val_t{alignment});
    }
};
using Memory = std::unique_ptr<uchar, AlignedDelete>;

qint64 rowBytes(const QSize& size)
{
    const auto step = static_cast<qint64>(alignment);
    return (qint64{size.width()} * bytesPerPixel + step - 1) / step * step;
}

bool isUsable(const QSize& size)
{
    constexpr qint64 most = std::numeric_limits<int>::max();
    return !size.isEmpty() && rowBytes(size) <= most / size.height();
}

Memory allocate(const QSize& size)
{
    const auto bytes = static_cast<std::size_t>(rowBytes(size) * size.height());
    void* memory = ::operator new (bytes, std::align_val_t{alignment}, std::nothrow);
    return Memory(static_cast<uchar*>(memory));
}

} // namespace

/// The buffers and their count. Images hold it too, hence it outlives the pool.
class FramePool::Shared final
{
public:
    explicit Shared(int buffers) : capacity(buffers) {}

    Memory take(const QSize& size);
    void giveBack(Memory memory, const QSize& size);
    void close();
    int inUse() const;

    const int capacity;

private:
    mutable std::mutex mutex;
    std::vector<Memory> spare; ///< Of spareSize.
    QSize spareSize;
    int out = 0;
    bool closed = false;
};

Memory FramePool::Shared::take(const QSize& size)
{
    const std::lock_guard lock(mutex);
    if (out >= capacity)
        return {};
    if (size != spareSize) {
        spare.clear();
        spareSize = size;
    }
    Memory memory;
    if (spare.empty()) {
        memory = allocate(size);
    } else {
        memory = std::move(spare.back());
        spare.pop_back();
    }
    out += memory ? 1 : 0;
    return memory;
}

void FramePool::Shared::giveBack(Memory memory, const QSize& size)
{
    const std::lock_guard lock(mutex);
    --out;
    if (!closed && size == spareSize)
        spare.push_back(std::move(memory));
}

void FramePool::Shared::close()
{
    const std::lock_guard lock(mutex);
    closed = true;
    spare.clear();
}

int FramePool::Shared::inUse() const
{
    const std::lock_guard lock(mutex);
    return out;
}

FramePool::FramePool(int capacity) : shared(std::make_shared<Shared>(capacity)) {}

FramePool::~FramePool()
{
    shared->close();
}

QImage FramePool::acquire(const QSize& size)
{
    struct Loan
    {
        std::shared_ptr<Shared> owner;
        Memory memory;
        QSize size;
    };
    Memory memory = isUsable(size) ? shared->take(size) : Memory();
    if (!memory)
        return {};
    uchar* pixels = memory.get();
    const auto giveBack = [](void* info) {
        const std::unique_ptr<Loan> loan(static_cast<Loan*>(info));
        loan->owner->giveBack(std::move(loan->memory), loan->size);
    };
    return QImage(pixels, size.width(), size.height(), static_cast<int>(rowBytes(size)),
                  QImage::Format_RGB32, giveBack, new Loan{shared, std::move(memory), size});
}

int FramePool::capacity() const
{
    return shared->capacity;
}

int FramePool::inUse() const
{
    return shared->inUse();
}

} // namespace zolens
