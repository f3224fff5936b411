#pragma once

#include <QSize>

#include <mutex>
#include <vector>

namespace zolens {

/// A format that a device offers, with its sizes from small to large.
struct VideoFormat
{
    /// The source's own: a FourCC, one of the GenICam naming convention, or a codec of FFmpeg's.
    quint32 code = 0;
    int number = 0;           ///< As in CWCamera::previewFormats.
    std::vector<QSize> sizes; ///< Empty only while a stream has not told its one yet.
};

inline bool operator==(const VideoFormat& a, const VideoFormat& b)
{
    return a.code == b.code && a.number == b.number && a.sizes == b.sizes;
}

/// A format, by its position among those on offer, and a size.
struct VideoMode
{
    int format = 0;
    QSize size{0, 0}; ///< Empty until it is known.
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
    /// The size that a device starts with: the largest up to full high definition, or, where
    /// smaller ones show less, the largest of all.
    enum class FirstSize { Comfortable, Largest };

    /// Chooses the best format. False when the same was offered before already, which leaves the
    /// choice as it is.
    bool offer(std::vector<VideoFormat> videoFormats, FirstSize first = FirstSize::Comfortable);
    std::vector<VideoFormat> formats() const;
    VideoFormat format(int position) const;

    VideoMode preview() const;
    /// The preview's format in the size for still pictures.
    VideoMode still() const;
    std::vector<QSize> sizes() const;

    /// False for a position that is none. Keeps the sizes where the format has them, and those that
    /// the device has made of them while the format stays.
    bool selectFormat(int position);
    bool selectSize(int position);
    bool selectStillSize(int position);
    /// The next smaller size for the preview; false when there is none.
    bool selectSmallerSize();
    /// The device has that mode instead of the preview that was asked for; an answer to an older
    /// choice does not count, nor one in a format that is not on offer any more. Whether the choice
    /// is another one now.
    bool correct(const VideoMode& asked, const VideoMode& actual);

private:
    const std::vector<QSize>& sizesNow() const;

    mutable std::mutex mutex;
    std::vector<VideoFormat> offered;
    VideoMode chosen;
    QSize stillSize;
};

} // namespace zolens
