#pragma once

#include "Picture.h"

#include <functional>

namespace zolens {

/// Encodes pictures that come at any rate, with a key frame every second. The preset follows from
/// the pictures' size and the processor, so that they can be shown at the same time.
class H264Encoder final
{
public:
    using PacketHandler = std::function<void(AVPacket*)>;

    /// Of pictures and packets.
    static constexpr AVRational timeBase{1, 90000};

    static bool isAvailable();

    bool open(const QSize& size);
    bool isOpen() const;
    QSize size() const;
    /// Null on failure.
    AvPointer<AVCodecParameters> parameters() const;

    /// The handler gets the picture's packet.
    bool encode(AVFrame* picture, const PacketHandler& handler);
    /// Hands out what is under way; nothing can be encoded afterwards.
    bool finish(const PacketHandler& handler);

private:
    bool receive(const PacketHandler& handler);

    AvPointer<AVCodecContext> codec;
    AvPointer<AVPacket> packet;
    int64_t nextKeyFrame = 0;
};

} // namespace zolens
