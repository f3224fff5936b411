#pragma once

#include "DeviceControls.h"
#include "Outcome.h"
#include "SinkGate.h"
#include "StillRequest.h"
#include "VideoModes.h"
#include "WakeUp.h"
#include "pixels/PictureLook.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace zolens {

/// Why a flow of frames ended.
enum class CaptureEnd { Cancelled, NewMode, LargeStill, Stalled, Gone };

/// What a camera and its threads share, from one start to the stop. Owned by all of them, so that a
/// thread which hangs in a device can end later by itself. Every part is thread-safe.
struct CaptureSession
{
    explicit CaptureSession(FrameSink* frameSink) : sink(frameSink) {}
    virtual ~CaptureSession() = default;

    /// Takes over what the user has chosen for the camera. Before the worker starts.
    void inherit(const CaptureSession& earlier);

    /// What the device offers, and what it took instead of what it was asked for. Once it is open,
    /// the sink is told of what that changes.
    void offer(std::vector<VideoFormat> formats,
               VideoModes::FirstSize first = VideoModes::FirstSize::Comfortable);
    void correct(const VideoMode& asked, const VideoMode& actual);

    void setControls(std::shared_ptr<DeviceControls> newControls);
    /// Null before the device is open and after it is gone.
    std::shared_ptr<DeviceControls> controls() const;

    /// Whether the device has sizes to choose from for stills.
    bool hasStillSizes() const;
    /// Whether a still picture is wanted that the preview cannot give.
    bool wantsLargeStill() const;
    bool wantsPreviewStill() const;
    /// How long somebody waits for a still picture, who can do nothing else meanwhile.
    std::chrono::milliseconds patienceForStill() const;
    /// How many pictures a still has to wait for after a switch to another mode: the first ones may
    /// be dark, torn or of before. Fewer where each takes long.
    int settlingFrames(double statedFrameTime) const;
    /// The one in force, as far as the device tells it.
    std::chrono::microseconds exposureTime() const;
    /// Why a flow of frames in that mode has to end; nothing while it may go on.
    std::optional<CaptureEnd> interruption(const VideoMode& running) const;

    /// Whether stills may have a size of their own. Does not change once the worker runs.
    bool tryStillCapture = false;
    /// The patience for a still picture besides its exposure. Does not change either.
    std::chrono::milliseconds stillPatience{5000};
    SinkGate sink;
    WakeUp wake;
    StillRequest still{wake};
    /// Whether the device could be opened; `info` does not change any more then.
    Outcome opened;
    /// Settled when the worker is done.
    Outcome finished;
    VideoModes modes;
    PictureLook look;
    _tag_VideoDeviceInfo info;

    /// The device was lost and is looked for.
    std::atomic<bool> away{false};
    std::atomic<quint64> damaged{0};  ///< Frames that could not be decoded.
    std::atomic<quint64> dropped{0};  ///< Frames that nobody had time to decode.
    std::atomic<quint64> restarts{0}; ///< Of a device that stalled.

private:
    bool isLargeStill() const;
    void tell(bool changed);

    mutable std::mutex mutex;
    std::shared_ptr<DeviceControls> deviceControls;
};

} // namespace zolens
