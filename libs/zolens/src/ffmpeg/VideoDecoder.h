#pragma once

#include "AvPointers.h"

#include <QtGlobal>

#include <functional>

namespace zolens {

/// Turns coded frames into pictures in the colour space of the codec. Damaged frames are skipped
/// and counted. Used by one thread at a time.
class VideoDecoder final
{
public:
    using FrameHandler = std::function<void(const AVFrame&)>;

    /// A live stream is decoded with the least delay, else with the most speed. False when there is
    /// no decoder for the codec.
    bool open(const AVCodecParameters& parameters, bool live);
    /// Calls `handler` for every picture that comes out, mostly one.
    void decode(const AVPacket& packet, const FrameHandler& handler);
    /// Hands out what the decoder still holds, and prepares for a new beginning.
    void drain(const FrameHandler& handler);

    /// Whether every frame stands alone, so that any may be left out before decoding.
    bool isIntraOnly() const { return intraOnly; }
    quint64 damagedFrames() const { return damaged; }

private:
    void receive(const FrameHandler& handler);

    AvPointer<AVCodecContext> codec;
    AvPointer<AVFrame> frame;
    quint64 damaged = 0;
    bool intraOnly = false;
};

} // namespace zolens
