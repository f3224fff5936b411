#pragma once

#include "VideoFormats.h"

#include <mutex>
#include <vector>

namespace zolens {

/// A format, by its position among those on offer, and a size.
struct VideoMode
{
    int format = 0;
    QSize size;
};

inline bool operator==(const VideoMode& a, const VideoMode& b)
{
    return a.format == b.format && a.size == b.size;
}
inline bool operator!=(const VideoMode& a, const VideoMode& b)
{
    return !(a == b);
}

/// What a device offers and which of it is wanted. The program chooses, the worker follows, and
/// corrects the choice where the device refuses it. Thread-safe.
class VideoModes final
{
public:
    /// Chooses the best format, in the largest size up to full high definition.
    void offer(std::vector<VideoFormat> videoFormats);
    std::vector<VideoFormat> formats() const;
    VideoFormat format(int position) const;

    VideoMode preview() const;
    /// The preview's format in the size for still pictures.
    VideoMode still() const;
    std::vector<QSize> sizes() const;

    /// False for a position that is none. Keeps the sizes where the format has them.
    bool selectFormat(int position);
    bool selectSize(int position);
    bool selectStillSize(int position);
    /// The device has that mode instead of the preview that was asked for; an answer to an older
    /// choice does not count.
    void correct(const VideoMode& asked, const VideoMode& actual);

private:
    const std::vector<QSize>& sizesNow() const;

    mutable std::mutex mutex;
    std::vector<VideoFormat> offered;
    VideoMode chosen;
    QSize stillSize;
};

} // namespace zolens
