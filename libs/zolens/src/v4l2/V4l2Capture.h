#pragma once

#include "V4l2Session.h"
#include "V4l2Stream.h"
#include "stream/StreamTiming.h"

#include <QImage>

#include <memory>
#include <optional>

namespace zolens {

class DecoderTeam;
class V4l2Device;

/// The work of a camera's thread: opens the device, brings its frames to the decoders, follows the
/// choice of format and size, takes still pictures, and starts the stream anew when it stalls,
/// until it is cancelled or the device is gone.
class V4l2Capture final
{
public:
    explicit V4l2Capture(V4l2Session& v4l2Session);
    ~V4l2Capture();

    bool open();
    void run();

private:
    /// Why the flow of frames ended.
    enum class End { Cancelled, NewMode, LargeStill, Stalled, Gone };

    bool identify();
    int startStream(const VideoMode& mode);
    int startPreview();
    int startPatiently();
    bool resume();
    bool waitOut();
    End capture();
    std::optional<End> interruption() const;
    int await(const FrameWatchdog& watchdog, DriverFrame* frame);
    int takeReady(short events, DriverFrame* frame);
    void pass(const DriverFrame& frame, DecoderTeam* team);
    void takeStill();
    QImage stillPicture();
    FrameWatchdog makeWatchdog() const;

    V4l2Session& session;
    std::shared_ptr<V4l2Device> device;
    std::unique_ptr<V4l2Stream> stream;
    VideoMode running; ///< The last preview that the device took.
    ReconnectPause pause;
    StreamClock::time_point begun;
};

} // namespace zolens
