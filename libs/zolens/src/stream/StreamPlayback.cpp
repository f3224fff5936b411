#include "StreamPlayback.h"

#include "StreamLog.h"
#include "StreamSession.h"
#include "pixels/FormatNumber.h"

#include <utility>

namespace zolens {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds openingTime(4000);
/// A stream whose data come for so long without a picture is taken for open: its first key frame
/// is still to come.
constexpr milliseconds keyFramePatience(3000);

/// H.265 counts as the older codec of its family; the pictures of all others are known by what
/// becomes of them.
int formatNumber(AVCodecID codec)
{
    switch (codec) {
    case AV_CODEC_ID_MJPEG:
        return FormatNumber::motionJpeg;
    case AV_CODEC_ID_H264:
    case AV_CODEC_ID_HEVC:
        return FormatNumber::h264;
    default:
        return FormatNumber::packedRgb24;
    }
}

} // namespace

StreamPlayback::StreamPlayback(StreamSession& streamSession)
    : session(streamSession),
      begun(StreamClock::now()),
      interrupt(session.wake),
      demuxer(interrupt),
      watchdog(begun + openingTime, 0.0),
      clock(0.0),
      size(session.modes.preview().size)
{
    interrupt.setDeadline(begun + openingTime);
}

bool StreamPlayback::open()
{
    if (!demuxer.open(session.url))
        return false;
    const AVCodecParameters& video = demuxer.video();
    if (!decoder.open(video, !demuxer.needsPacing()))
        return false;
    if (video.width > 0 && video.height > 0)
        size = QSize(video.width, video.height);
    tellMode();
    watchdog = FrameWatchdog(begun + openingTime, demuxer.frameDuration());
    clock = PlaybackClock(demuxer.frameDuration());
    return true;
}

void StreamPlayback::run()
{
    const quint64 damagedBefore = session.damaged;
    while (const AVPacket* packet = nextPacket()) {
        show(*packet);
        session.damaged = damagedBefore + decoder.damagedFrames();
    }
    if (decoder.damagedFrames() > 0)
        qCDebug(streamLog, "%llu damaged frames were skipped", decoder.damagedFrames());
}

const AVPacket* StreamPlayback::nextPacket()
{
    const bool paced = demuxer.needsPacing();
    interrupt.setDeadline(paced ? StreamClock::now() + openingTime : watchdog.deadline());
    const AVPacket* packet = demuxer.read();
    if (!packet && paced && !interrupt.isExpired() && startOver())
        packet = demuxer.read();
    if (!packet)
        return nullptr;
    const auto now = StreamClock::now();
    watchdog.frameArrived(now);
    if (now - begun > keyFramePatience)
        session.opened.settle(true);
    return packet;
}

/// A recording begins again at its end, unless it gave nothing the last time.
bool StreamPlayback::startOver()
{
    decoder.drain([this](const AVFrame& frame) { present(frame); });
    clock.restart();
    interrupt.setDeadline(StreamClock::now() + openingTime);
    return std::exchange(gaveFrames, false) && demuxer.rewind();
}

void StreamPlayback::show(const AVPacket& packet)
{
    if (decoder.isIntraOnly() && (!waitUntilDue(packet.pts) || !reserve()))
        return;
    decoder.decode(packet, [this](const AVFrame& frame) { present(frame); });
    reserved.reset();
}

/// Asks for a buffer before decoding. False when nobody wants the frame.
bool StreamPlayback::reserve()
{
    if (size.isEmpty())
        return true;
    reserved = session.sink.acquireFrame(size);
    if (!reserved->isNull() || session.still.isPending())
        return true;
    reserved.reset();
    gaveFrames = true;
    session.opened.settle(true);
    return false;
}

void StreamPlayback::present(const AVFrame& frame)
{
    if (!decoder.isIntraOnly() && !waitUntilDue(frame.best_effort_timestamp))
        return;
    takeSize(QSize(frame.width, frame.height));
    gaveFrames = true;
    if (session.still.isPending())
        fulfilStill(frame);
    QImage target = takeTarget();
    if (!target.isNull() && convert(frame, &target))
        session.sink.deliver(std::move(target));
    session.opened.settle(true);
}

void StreamPlayback::takeSize(const QSize& newSize)
{
    if (newSize == size)
        return;
    size = newSize;
    tellMode();
}

void StreamPlayback::tellMode()
{
    const AVCodecID codec = demuxer.video().codec_id;
    std::vector<QSize> sizes;
    if (!size.isEmpty())
        sizes.push_back(size);
    session.offer({{codec, formatNumber(codec), std::move(sizes)}});
}

QImage StreamPlayback::takeTarget()
{
    QImage target;
    const bool asked = reserved.has_value();
    if (asked)
        target = *std::exchange(reserved, std::nullopt);
    if (asked && (target.isNull() || target.size() == size))
        return target;
    target = QImage();
    return session.sink.acquireFrame(size);
}

void StreamPlayback::fulfilStill(const AVFrame& frame)
{
    QImage still(frame.width, frame.height, QImage::Format_RGB32);
    if (!still.isNull() && convert(frame, &still))
        session.still.fulfil(still);
}

bool StreamPlayback::convert(const AVFrame& frame, QImage* target)
{
    if (!converter.convert(frame, session.look.orientation(), target))
        return false;
    session.look.apply(target);
    return true;
}

/// False when the stream was cancelled meanwhile. Frames of a live source are due as they come.
bool StreamPlayback::waitUntilDue(int64_t timeStamp)
{
    if (!demuxer.needsPacing())
        return true;
    std::optional<double> seconds;
    if (timeStamp != AV_NOPTS_VALUE)
        seconds = double(timeStamp) * av_q2d(demuxer.timeBase());
    return session.wake.sleepUntil(clock.due(seconds, StreamClock::now()));
}

} // namespace zolens
