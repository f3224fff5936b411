#pragma once

#include "FrameAssembler.h"
#include "ffmpeg/AvPointers.h"

namespace zolens {

class StreamInterrupt;
class StreamUrl;

/// One connection to a source: finds its video and hands out the coded frames one by one. Used on
/// the worker's thread only; every call ends when `interrupt` says so.
class StreamDemuxer final
{
public:
    explicit StreamDemuxer(StreamInterrupt& interrupt);
    ~StreamDemuxer();

    /// False when the source cannot be reached, refuses, or has no video.
    bool open(const StreamUrl& url);
    /// The next coded frame, valid until the next call. Null when the source has ended or failed,
    /// or the call was interrupted.
    const AVPacket* read();
    /// Back to the first frame. False when the source cannot do that.
    bool rewind();

    const AVCodecParameters& video() const;
    AVRational timeBase() const;
    /// The frames' distance in seconds as the source states it; 0 when it does not.
    double frameDuration() const;
    /// Whether the source gives frames as fast as they are read, rather than as they happen.
    bool needsPacing() const { return paced; }

private:
    bool connectTo(const StreamUrl& url);
    bool findVideo();
    void takePieces();
    bool isWorthRetrying(int error);
    const AVStream* stream() const;

    StreamInterrupt& interrupt;
    AvPointer<AVFormatContext> format;
    AvPointer<AVPacket> packet;
    FrameAssembler assembler;
    int videoIndex = -1;
    int badReads = 0;
    bool paced = false;
    bool inPieces = false;
};

} // namespace zolens
