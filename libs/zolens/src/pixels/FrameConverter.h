#pragma once

#include "ffmpeg/AvPointers.h"

class QImage;

namespace zolens {

/// Turns decoded pictures into images of Format_RGB32. The colour matrix (BT.601, BT.709, BT.2020)
/// and the range (full or limited) are those that the stream states; a stream that states no
/// matrix is taken for BT.709 from high definition on and for BT.601 below. libyuv holds the factor
/// of the blue difference at 2.0, so that blue of the strongest colours is up to 5% off in BT.709.
class FrameConverter final
{
public:
    struct Orientation
    {
        bool flip = false;   ///< Upside down.
        bool mirror = false; ///< Left to right.
    };

    /// Fills `target` with the frame, or with its upper left part where it is larger. False when
    /// the frame is smaller or unusable.
    bool convert(const AVFrame& frame, Orientation orientation, QImage* target);

private:
    bool scale(const AVFrame& frame, Orientation orientation, QImage* target);

    bool prepareScaled(const AVFrame& frame);

    // For the formats that libyuv lacks. Their rows go through a picture with room behind each row,
    // since the scaler writes beyond the ends.
    AvPointer<SwsContext> scaler;
    AvPointer<AVFrame> scaled;
};

} // namespace zolens
