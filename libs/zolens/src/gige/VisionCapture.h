#pragma once

#include "VisionSession.h"
#include "VisionStream.h"
#include "device/LiveTiming.h"
#include "pixels/SensorConverter.h"

#include <QImage>

#include <memory>

namespace zolens {

class VisionControls;
class VisionDevice;

/// The work of a camera's thread: connects, brings its pictures to the sink, follows the choice of
/// format and size, takes still pictures, and connects anew when pictures stay away, until it is
/// cancelled.
class VisionCapture final
{
public:
    explicit VisionCapture(std::shared_ptr<VisionSession> visionSession);
    ~VisionCapture();

    /// False when the camera cannot be opened in the time that an opening may take.
    bool open();
    void run();

private:
    bool connect(StreamClock::time_point deadline);
    void describe();
    bool offerModes();
    bool startStream(const VideoMode& mode);
    bool startPreview();
    bool startInSomeSize();
    bool resume();
    bool comeBack();
    void release();

    CaptureEnd capture();
    bool isOverdue(const FrameWatchdog& watchdog) const;
    VisionStream::Picture nextPicture(FrameWatchdog* watchdog);
    void waitForPicture(const FrameWatchdog& watchdog);
    void show(ArvBuffer& buffer);
    QImage stillOf(ArvBuffer& buffer);
    bool convert(ArvBuffer& buffer, QImage* target);
    void takeStill();
    QImage settledPicture();

    const std::shared_ptr<VisionSession> session;
    const std::shared_ptr<VisionControls> controls;
    std::shared_ptr<VisionDevice> device; ///< Null while it is away, as the stream is.
    std::unique_ptr<VisionStream> stream;
    SensorConverter converter;
    VideoMode running; ///< The last preview that the camera took.
    ReconnectPause pause;
    StreamClock::time_point begun;
    int lostInARow = 0; ///< Pictures that came damaged, since the last sound one.
};

} // namespace zolens
