#pragma once

#include "CaptureNodes.h"
#include "PictureLook.h"
#include "VideoModes.h"
#include "WakeUp.h"
#include "stream/Outcome.h"
#include "stream/SinkGate.h"
#include "stream/StillRequest.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace zolens {

class CameraControls;

/// Which device a camera stands for.
struct V4l2Address
{
    V4l2Host host;
    CWUVCFilter filter;
    int type = CWDevice_Uvc;
    int number = 0;
};

/// What a camera and its threads share, from one start to the stop. Owned by all of them, so that a
/// thread which hangs in a driver can end later by itself. Every part is thread-safe.
struct V4l2Session
{
    V4l2Session(V4l2Address deviceAddress, bool tryStillCapture, FrameSink* frameSink);

    void setControls(std::shared_ptr<CameraControls> cameraControls);
    /// Null before the device is open and after it is gone.
    std::shared_ptr<CameraControls> controls() const;

    /// Whether the device has sizes to choose from for stills.
    bool hasStillSizes() const;
    /// Whether a still picture is wanted that the preview cannot give.
    bool wantsLargeStill() const;
    bool wantsPreviewStill() const;

    const V4l2Address address;
    const bool stillPath;
    SinkGate sink;
    StillRequest still;
    /// Whether the device could be opened; `info` does not change any more then.
    Outcome opened;
    /// Settled when the worker is done.
    Outcome finished;
    WakeUp wake;
    VideoModes modes;
    PictureLook look;
    _tag_VideoDeviceInfo info;

    std::atomic<quint64> damaged{0};  ///< Frames that could not be decoded.
    std::atomic<quint64> dropped{0};  ///< Frames for which no decoder was free.
    std::atomic<quint64> restarts{0}; ///< Of a device that stalled.

private:
    bool isLargeStill() const;

    mutable std::mutex mutex;
    std::shared_ptr<CameraControls> deviceControls;
};

} // namespace zolens
