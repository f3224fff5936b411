#pragma once

#include "FrameDecoder.h"
#include "V4l2Session.h"
#include "V4l2Stream.h"
#include "device/LiveTiming.h"

#include <QImage>

#include <memory>

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
    bool identify();
    int startStream(const VideoMode& mode);
    int startPreview();
    int startPatiently();
    bool isWorthAnotherTry(int error, StreamClock::time_point end);
    bool resume();
    bool waitOut();
    CaptureEnd capture();
    int await(const FrameWatchdog& watchdog, DriverFrame* frame);
    int takeReady(short events, DriverFrame* frame);
    bool pass(const DriverFrame& frame, DecoderTeam* team);
    void takeStill();
    QImage stillPicture();
    FrameDecoder::Result decodeStill(const DriverFrame& frame, bool settled, QImage* picture);

    V4l2Session& session;
    std::shared_ptr<V4l2Device> device;
    std::unique_ptr<V4l2Stream> stream;
    std::unique_ptr<FrameDecoder> decoder; ///< For the stream, from its start until it is in use.
    VideoMode running;                     ///< The last preview that the device took.
    ReconnectPause pause;
    StreamClock::time_point begun;
};

} // namespace zolens
