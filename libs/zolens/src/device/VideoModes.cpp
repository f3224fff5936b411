#include "VideoModes.h"

#include <algorithm>
#include <utility>

namespace zolens {
namespace {

constexpr qint64 comfortableWidth = 1920;
constexpr qint64 comfortableHeight = 1080;

template <typename T>
bool isPosition(int index, const std::vector<T>& list)
{
    return index >= 0 && std::size_t(index) < list.size();
}

QSize comfortableSize(const std::vector<QSize>& sizes)
{
    const auto fits = [](const QSize& size) {
        return size.width() <= comfortableWidth && size.height() <= comfortableHeight;
    };
    const auto found = std::find_if(sizes.rbegin(), sizes.rend(), fits);
    return found == sizes.rend() ? sizes.front() : *found;
}

qint64 area(const QSize& size)
{
    return qint64{size.width()} * size.height();
}

bool contains(const std::vector<QSize>& sizes, const QSize& size)
{
    return std::find(sizes.begin(), sizes.end(), size) != sizes.end();
}

} // namespace

bool VideoModes::offer(std::vector<VideoFormat> videoFormats, FirstSize first)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (videoFormats == offered)
        return false;
    offered = std::move(videoFormats);
    chosen = {};
    if (sizesNow().empty())
        return true;
    stillSize = sizesNow().back();
    chosen.size = first == FirstSize::Largest ? stillSize : comfortableSize(sizesNow());
    return true;
}

std::vector<VideoFormat> VideoModes::formats() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return offered;
}

VideoFormat VideoModes::format(int position) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return offered.at(std::size_t(position));
}

VideoMode VideoModes::preview() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return chosen;
}

VideoMode VideoModes::still() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return {chosen.format, stillSize};
}

std::vector<QSize> VideoModes::sizes() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return sizesNow();
}

bool VideoModes::selectFormat(int position)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (!isPosition(position, offered))
        return false;
    if (position == chosen.format)
        return true;
    chosen.format = position;
    const std::vector<QSize>& sizes = sizesNow();
    if (sizes.empty())
        return true;
    if (!contains(sizes, chosen.size))
        chosen.size = comfortableSize(sizes);
    if (!contains(sizes, stillSize))
        stillSize = sizes.back();
    return true;
}

bool VideoModes::selectSize(int position)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (!isPosition(position, sizesNow()))
        return false;
    chosen.size = sizesNow()[std::size_t(position)];
    return true;
}

bool VideoModes::selectStillSize(int position)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (!isPosition(position, sizesNow()))
        return false;
    stillSize = sizesNow()[std::size_t(position)];
    return true;
}

bool VideoModes::selectSmallerSize()
{
    const std::lock_guard<std::mutex> lock(mutex);
    const auto isSmaller = [this](const QSize& size) { return area(size) < area(chosen.size); };
    const std::vector<QSize>& sizes = sizesNow();
    const auto found = std::find_if(sizes.rbegin(), sizes.rend(), isSmaller);
    if (found == sizes.rend())
        return false;
    chosen.size = *found;
    return true;
}

bool VideoModes::correct(const VideoMode& asked, const VideoMode& actual)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (chosen != asked || actual == asked || !isPosition(actual.format, offered))
        return false;
    chosen = actual;
    return true;
}

const std::vector<QSize>& VideoModes::sizesNow() const
{
    static const std::vector<QSize> none;
    return offered.empty() ? none : offered[std::size_t(chosen.format)].sizes;
}

} // namespace zolens
