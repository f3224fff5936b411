#pragma once

#include "FrameConverter.h"

#include <atomic>

class QImage;

namespace zolens {

/// What the library itself does to the pictures, since devices seldom can. Written on the GUI
/// thread, read by decoders.
struct PictureLook
{
    enum ColorMode { Colorful, Monochrome, Negative };
    static constexpr int strongestDenoise = 100;

    PictureLook& operator=(const PictureLook& other);

    FrameConverter::Orientation orientation() const { return {flip, mirror}; }
    /// Removes noise and colours as wanted, in place.
    void apply(QImage* picture) const;

    std::atomic<bool> flip{false};
    std::atomic<bool> mirror{false};
    std::atomic<int> colorMode{Colorful};
    /// From 0, which does nothing, to the strongest.
    std::atomic<int> denoise{0};
};

/// Brings each pixel nearer to the mean of its neighbours, by at most `limit` steps of 255 a
/// channel and direction, so that edges stay.
void smooth(QImage* picture, int limit);

} // namespace zolens
