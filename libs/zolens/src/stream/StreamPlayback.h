#pragma once

#include "FrameConverter.h"
#include "StreamDecoder.h"
#include "StreamDemuxer.h"
#include "StreamTiming.h"

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
    QImage takeTarget(const QSize& size);
    void fulfilStill(const AVFrame& frame);
    bool waitUntilDue(int64_t timeStamp);

    StreamSession& session;
    const StreamClock::time_point begun;
    StreamDemuxer demuxer;
    StreamDecoder decoder;
    FrameConverter converter;
    FrameWatchdog watchdog;
    PlaybackClock clock;
    /// The answer of the sink for the frame that is decoded next; null inside when it was refused.
    std::optional<QImage> reserved;
    bool gaveFrames = false;
};

} // namespace zolens
