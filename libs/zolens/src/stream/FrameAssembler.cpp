#include "FrameAssembler.h"

#include <cstring>

namespace zolens {
namespace {

/// A source that never changes the time stamp gets no more memory than this, in bytes.
constexpr int largestFrame = 1 << 25;

} // namespace

FrameAssembler::FrameAssembler() : growing(av_packet_alloc()), complete(av_packet_alloc()) {}

const AVPacket* FrameAssembler::add(AVPacket& piece)
{
    if (!growing || !complete)
        return nullptr;
    if (growing->size > 0 && belongs(piece)) {
        append(piece);
        return nullptr;
    }
    av_packet_unref(complete.get());
    av_packet_move_ref(complete.get(), growing.get());
    av_packet_move_ref(growing.get(), &piece);
    return complete->size > 0 ? complete.get() : nullptr;
}

bool FrameAssembler::belongs(const AVPacket& piece) const
{
    return piece.pts == growing->pts && piece.size <= largestFrame - growing->size;
}

/// A frame for which memory runs out lacks the piece, like one that was damaged on the way.
void FrameAssembler::append(const AVPacket& piece)
{
    const int begin = growing->size;
    if (av_grow_packet(growing.get(), piece.size) < 0) {
        growing->flags |= AV_PKT_FLAG_CORRUPT;
        return;
    }
    std::memcpy(growing->data + begin, piece.data, size_t(piece.size));
    growing->flags |= piece.flags;
}

} // namespace zolens
