#pragma once

#include "PlaybackClock.h"
#include "StreamDemuxer.h"
#include "StreamInterrupt.h"
#include "device/LiveTiming.h"
#include "ffmpeg/VideoDecoder.h"
#include "pixels/FrameConverter.h"

#include <QImage>
#include <QSize>

#include <optional>

namespace zolens {

struct StreamSession;

/// The life of one connection: opens the source and brings its frames to the session's sink until
/// the source ends, stalls or is cancelled. Used on the worker's thread only.
class StreamPlayback final
{
public:
    explicit StreamPlayback(StreamSession& streamSession);

    bool open();
    void run();

private:
    const AVPacket* nextPacket();
    bool startOver();
    void show(const AVPacket& packet);
    void present(const AVFrame& frame);
    bool reserve();
    void takeSize(const QSize& newSize);
    void tellMode();
    QImage takeTarget();
    void fulfilStill(const AVFrame& frame);
    bool convert(const AVFrame& frame, QImage* target);
    bool waitUntilDue(int64_t timeStamp);

    StreamSession& session;
    const StreamClock::time_point begun;
    StreamInterrupt interrupt; ///< Needed by the demuxer up to its end.
    StreamDemuxer demuxer;
    VideoDecoder decoder;
    FrameConverter converter;
    FrameWatchdog watchdog;
    PlaybackClock clock;
    /// Of the pictures; at first that of the connection before. Empty until it is known.
    QSize size;
    /// The answer of the sink for the frame that is decoded next; null inside when it was refused.
    std::optional<QImage> reserved;
    bool gaveFrames = false;
};

} // namespace zolens
