#pragma once

#include "ffmpeg/AvPointers.h"

namespace zolens {

/// Puts frames together from pieces that come in order, each with the time stamp of its frame. The
/// time stamp alone tells frames apart: some servers repeat parameter sets between the slices of
/// one frame, where a look at the data would see the next begin. A frame is complete when a piece
/// of the next one is there. Used on the worker's thread only.
class FrameAssembler final
{
public:
    FrameAssembler();

    /// Takes the piece over. Returns the frame that it shows to be complete, valid until the next
    /// call, mostly null.
    const AVPacket* add(AVPacket& piece);

private:
    bool belongs(const AVPacket& piece) const;
    void append(const AVPacket& piece);

    AvPointer<AVPacket> growing;
    AvPointer<AVPacket> complete;
};

} // namespace zolens
