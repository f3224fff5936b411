#pragma once

#include "FrameDecoder.h"

#include <QImage>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace zolens {

struct V4l2Session;

/// Decodes the frames of one stream on threads of its own, several at a time where frames stand
/// alone, and delivers them in their order. Frames that come faster than they can be decoded are
/// dropped before decoding. The stream and the session must outlive it.
class DecoderTeam final
{
public:
    /// `stream` is running, and `first` decodes its frames.
    DecoderTeam(V4l2Session& v4l2Session, const V4l2Stream& v4l2Stream,
                std::unique_ptr<FrameDecoder> first);
    /// Finishes what is being decoded.
    ~DecoderTeam();

    /// False when the system has not left what it takes to decode anything.
    bool isRunning() const { return !threads.empty(); }
    /// The frame goes back to the driver when it is done.
    void submit(const DriverFrame& frame);

    /// Whether the latest frames were all damaged, more of them than get lost by accident.
    bool seesOnlyDamage() const;

private:
    struct Job
    {
        DriverFrame frame;
        quint64 number = 0;
    };

    void add(std::unique_ptr<FrameDecoder> decoder);
    void run(FrameDecoder& decoder);
    bool next(Job* job);
    QImage decode(FrameDecoder& decoder, const DriverFrame& frame);
    QImage decodeStill(FrameDecoder& decoder, const DriverFrame& frame, QImage target);
    bool decodeInto(FrameDecoder& decoder, const DriverFrame& frame, QImage* target);
    void note(FrameDecoder::Result result);
    void deliver(quint64 number, QImage&& picture);

    V4l2Session& session;
    const V4l2Stream& stream;
    const bool orderMatters; ///< Every frame is needed, hence none is dropped.
    std::atomic<int> damagedInARow{0};
    std::mutex mutex; ///< Guards what follows.
    std::condition_variable changed;
    std::deque<Job> waiting;
    quint64 submitted = 0;
    quint64 delivered = 0;
    bool ending = false;

    std::vector<std::unique_ptr<FrameDecoder>> decoders;
    std::vector<std::thread> threads;
};

} // namespace zolens
