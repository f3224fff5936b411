#pragma once

#include "Recording.h"

#include <memory>
#include <optional>
#include <thread>

namespace zolens {

/// Records pictures to an MP4 file on a thread of its own, in the time in which they arrive.
/// Every operation is bounded in time, also when the disk hangs: then the thread is left alone.
class VideoRecorder final
{
public:
    /// Null when the path cannot hold a recording, the disk does not answer in time, or the system
    /// has no thread left. `ended` is called from the recorder's thread.
    static std::unique_ptr<VideoRecorder> start(const QString& path, Recording::Ended ended);
    /// Leaves at least a complete file behind.
    ~VideoRecorder();
    Q_DISABLE_COPY(VideoRecorder)

    /// From one thread at a time, and not after stop(). Costs the conversion of the picture.
    void offer(const QImage& image, Recording::Clock::time_point arrival);
    /// The file is complete afterwards; the thread may go on making it a plain MP4.
    void stop();
    /// Waits for the plain MP4 until then, and leaves the file as it is if that takes longer. For
    /// several recorders that go together, which then end together too.
    void finishRewriting(Recording::Clock::time_point deadline);
    /// Leaves the file alone from now on, after stop(). False when the disk hangs in the midst of
    /// writing or replacing it.
    bool letGo();

    /// False once the recording has ended by itself or by stop().
    bool isRecording() const;
    bool isOver() const;
    quint64 droppedFrames() const;
    QString path() const;

private:
    explicit VideoRecorder(std::shared_ptr<Recording> newRecording);

    std::shared_ptr<Recording> recording;
    std::optional<Recording::Clock::time_point> stopped;
    std::optional<Recording::Clock::time_point> rewritingEnd; ///< When it was waited for.
    std::thread thread;
};

} // namespace zolens
