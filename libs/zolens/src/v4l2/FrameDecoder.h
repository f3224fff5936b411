#pragma once

#include "V4l2Stream.h"
#include "pixels/FrameConverter.h"

#include <memory>

class QImage;

namespace zolens {

/// Turns the frames of a device into images of Format_RGB32. Each thread uses one of its own.
class FrameDecoder
{
public:
    enum class Result {
        Picture,
        Nothing, ///< The picture needs more data.
        Damaged,
    };

    virtual ~FrameDecoder();

    /// Whether frames build upon each other, so that all of them must come here, in their order.
    virtual bool needsEveryFrame() const { return false; }
    /// Fills `target`, which has the size of the layout. It may be null for a decoder that needs
    /// every frame.
    virtual Result decode(const DriverFrame& frame, FrameConverter::Orientation orientation,
                          QImage* target) = 0;
};

/// Null when there is no decoder.
std::unique_ptr<FrameDecoder> makeDecoder(const PictureLayout& layout);

} // namespace zolens
