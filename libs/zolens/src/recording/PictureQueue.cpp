#include "PictureQueue.h"

namespace zolens {
namespace {

/// Half a second at 30 frames a second, to bridge a slow disk or a busy processor.
constexpr std::size_t mostPictures = 16;
/// Large pictures are fewer, yet as many as keep the encoder busy.
constexpr std::size_t leastPictures = 2;
constexpr qint64 mostBytes = 128 * 1024 * 1024;

qint64 bytesOf(const QSize& size)
{
    return qint64{size.width()} * size.height() * 3 / 2;
}

} // namespace

bool PictureQueue::hasRoomFor(const QSize& size) const
{
    const std::lock_guard lock(mutex);
    if (closed || pictures.size() >= mostPictures)
        return false;
    const auto after = static_cast<qint64>(pictures.size() + 1);
    return pictures.size() < leastPictures || after * bytesOf(size) <= mostBytes;
}

void PictureQueue::put(Picture picture)
{
    {
        const std::lock_guard lock(mutex);
        if (!closed)
            pictures.push_back(std::move(picture));
    }
    changed.notify_one();
}

Picture PictureQueue::take(Clock::duration patience)
{
    std::unique_lock lock(mutex);
    changed.wait_for(lock, patience, [this] { return closed || !pictures.empty(); });
    if (pictures.empty() || isEnded())
        return nullptr;
    Picture oldest = std::move(pictures.front());
    pictures.pop_front();
    return oldest;
}

bool PictureQueue::isOver() const
{
    const std::lock_guard lock(mutex);
    return isEnded();
}

bool PictureQueue::isEnded() const
{
    return closed && (pictures.empty() || Clock::now() >= end);
}

void PictureQueue::close(Clock::time_point endOfTaking)
{
    {
        const std::lock_guard lock(mutex);
        closed = true;
        end = std::min(end, endOfTaking);
    }
    changed.notify_one();
}

} // namespace zolens
