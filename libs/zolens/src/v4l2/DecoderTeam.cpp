#include "DecoderTeam.h"

#include "StartThread.h"
#include "V4l2Session.h"

#include <pthread.h>

#include <libyuv.h>

#include <utility>

namespace zolens {
namespace {

/// Enough for 30 frames a second of 3840 x 2160 pixels.
constexpr int parallelDecoders = 2;
constexpr std::size_t mostWaiting = 1;
constexpr int mostDamagedByAccident = 8;

} // namespace

DecoderTeam::DecoderTeam(V4l2Session& v4l2Session, const V4l2Stream& v4l2Stream,
                         std::unique_ptr<FrameDecoder> first)
    : session(v4l2Session),
      stream(v4l2Stream),
      orderMatters(first->needsEveryFrame())
{
    add(std::move(first));
    for (int i = 1; !orderMatters && i < parallelDecoders; ++i) {
        if (auto another = makeDecoder(stream.layout()))
            add(std::move(another));
    }
}

/// There is one fewer where the system has no thread left for it.
void DecoderTeam::add(std::unique_ptr<FrameDecoder> decoder)
{
    std::thread thread = startThread([this, worker = decoder.get()] { run(*worker); });
    if (!thread.joinable())
        return;
    decoders.push_back(std::move(decoder));
    threads.push_back(std::move(thread));
}

DecoderTeam::~DecoderTeam()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        ending = true;
    }
    changed.notify_all();
    for (std::thread& thread : threads)
        thread.join();
}

void DecoderTeam::submit(const DriverFrame& frame)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (orderMatters || waiting.size() < mostWaiting) {
            waiting.push_back({frame, submitted++});
            changed.notify_all();
            return;
        }
    }
    ++session.dropped;
    stream.giveBack(frame);
}

bool DecoderTeam::seesOnlyDamage() const
{
    return damagedInARow > mostDamagedByAccident;
}

void DecoderTeam::run(FrameDecoder& decoder)
{
    pthread_setname_np(pthread_self(), "zolens-decode");
    Job job;
    while (next(&job)) {
        QImage picture = decode(decoder, job.frame);
        stream.giveBack(job.frame);
        deliver(job.number, std::move(picture));
    }
}

bool DecoderTeam::next(Job* job)
{
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return ending || !waiting.empty(); });
    if (ending)
        return false;
    *job = waiting.front();
    waiting.pop_front();
    return true;
}

QImage DecoderTeam::decode(FrameDecoder& decoder, const DriverFrame& frame)
{
    const QSize size = stream.layout().size;
    QImage target = session.sink.acquireFrame(size);
    if (session.wantsPreviewStill())
        return decodeStill(decoder, frame, std::move(target));
    if (target.isNull() && !decoder.needsEveryFrame())
        return {};
    return decodeInto(decoder, frame, &target) ? std::move(target) : QImage();
}

/// A still picture is kept for long, so it is none of the few that go around.
QImage DecoderTeam::decodeStill(FrameDecoder& decoder, const DriverFrame& frame, QImage target)
{
    QImage still(stream.layout().size, QImage::Format_RGB32);
    if (still.isNull() || !decodeInto(decoder, frame, &still))
        return {};
    if (!target.isNull())
        libyuv::ARGBCopy(still.constBits(), still.bytesPerLine(), target.bits(),
                         target.bytesPerLine(), target.width(), target.height());
    session.still.fulfil(still);
    return target;
}

bool DecoderTeam::decodeInto(FrameDecoder& decoder, const DriverFrame& frame, QImage* target)
{
    const bool wanted = !target->isNull();
    const auto result =
        decoder.decode(frame, session.look.orientation(), wanted ? target : nullptr);
    note(result);
    if (!wanted || result != FrameDecoder::Result::Picture)
        return false;
    session.look.apply(target);
    return true;
}

void DecoderTeam::note(FrameDecoder::Result result)
{
    if (result != FrameDecoder::Result::Damaged) {
        damagedInARow = 0;
        return;
    }
    ++damagedInARow;
    ++session.damaged;
}

/// Waits for its turn, also when there is nothing to deliver.
void DecoderTeam::deliver(quint64 number, QImage&& picture)
{
    {
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, [this, number] { return delivered == number; });
    }
    if (!picture.isNull())
        session.sink.deliver(std::move(picture));
    picture = QImage();
    {
        const std::lock_guard<std::mutex> lock(mutex);
        ++delivered;
    }
    changed.notify_all();
}

} // namespace zolens
