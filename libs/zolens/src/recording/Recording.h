#pragma once

#include "H264Encoder.h"
#include "PictureQueue.h"
#include "PlainMp4.h"
#include "RecordingFile.h"

#include <QImage>

#include <atomic>
#include <functional>
#include <optional>

namespace zolens {

/// One recording from its first picture to the finished file. Pictures are offered by one thread,
/// encoded and written by that of run(); the rest is for any thread.
class Recording final
{
public:
    using Clock = PictureQueue::Clock;
    /// Called from the thread of run() when the recording ends by itself.
    using Ended = std::function<void(RecordingEnd)>;

    enum class Stage {
        Opening,
        Running,
        Complete, ///< The file plays; it may still be rewritten.
        Over
    };

    Recording(const QString& path, Ended ended);

    void run();
    /// Whether the file was opened, within that time, and pictures are taken.
    bool isRunning(Clock::time_point deadline) const;

    /// Takes the picture or drops it when the encoder is behind. Times may leave gaps, which show
    /// the picture before them.
    void offer(const QImage& image, Clock::time_point arrival);
    /// Takes no more pictures; those that wait are encoded until `end`.
    void close(Clock::time_point end);
    /// Leaves a complete file as it is. False when it is being replaced, or was.
    bool cancelRewriting();
    /// Ends are not told any more.
    void forgetListener();

    bool waitFor(Stage stage, Clock::time_point deadline) const;
    quint64 droppedPictures() const;
    QString path() const;

private:
    bool open();
    void encodeAll();
    void encode(Picture picture);
    void repeatLast();
    bool openEncoder(const AVFrame& first);
    Picture fitted(Picture picture);
    void finish();
    RecordingEnd failure() const;
    int64_t ticksAt(Clock::time_point moment) const;
    void enter(Stage next);
    void tell(RecordingEnd reason);

    // The offering thread's.
    PicturePool offered;
    std::optional<Clock::time_point> start; ///< Set before the first picture is in the queue.

    PictureQueue queue;
    std::atomic<quint64> dropped{0};
    ReplacementPermit replacement;

    // The encoding thread's.
    PicturePool scaled;
    Picture last; ///< As it was encoded.
    H264Encoder encoder;
    RecordingFile file;
    const H264Encoder::PacketHandler writePacket;
    bool encodingFailed = false;

    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    Stage stage = Stage::Opening;
    Ended ended;
};

} // namespace zolens
