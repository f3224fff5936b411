#include "StreamPlayback.h"

#include "StreamLog.h"
#include "StreamSession.h"

#include <utility>

namespace zolens {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds openingTime(4500);
/// A stream whose data come for so long without a picture is taken for open: its first key frame
/// is still to come.
constexpr milliseconds keyFramePatience(3500);

/// As in CWCamera::previewFormats. H.265 counts as the older codec of its family; the pictures of
/// all others are known by what becomes of them.
int formatNumber(AVCodecID codec)
{
    switch (codec) {
    case AV_CODEC_ID_MJPEG:
        return 19;
    case AV_CODEC_ID_H264:
    case AV_CODEC_ID_HEVC:
        return 20;
    default:
        return 0;
    }
}

} // namespace

StreamPlayback::StreamPlayback(StreamSession& streamSession)
    : session(streamSession),
      begun(StreamClock::now()),
      demuxer(session.interrupt),
      watchdog(begun + openingTime, 0.0),
      clock(0.0)
{
    session.interrupt.setDeadline(begun + openingTime);
}

bool StreamPlayback::open()
{
    if (!demuxer.open(session.url))
        return false;
    const AVCodecParameters& video = demuxer.video();
    if (!decoder.open(video, !demuxer.needsPacing()))
        return false;
    session.format = formatNumber(video.codec_id);
    if (video.width > 0 && video.height > 0)
        session.setPictureSize(QSize(video.width, video.height));
    watchdog = FrameWatchdog(begun + openingTime, demuxer.frameDuration());
    clock = PlaybackClock(demuxer.frameDuration());
    return true;
}

void StreamPlayback::run()
{
    while (const AVPacket* packet = nextPacket())
        show(*packet);
    if (decoder.damagedFrames() > 0)
        qCDebug(streamLog, "%llu damaged frames were skipped", decoder.damagedFrames());
}

const AVPacket* StreamPlayback::nextPacket()
{
    const bool paced = demuxer.needsPacing();
    session.interrupt.setDeadline(paced ? StreamClock::now() + openingTime : watchdog.deadline());
    const AVPacket* packet = demuxer.read();
    if (!packet && paced && !session.interrupt.isExpired() && startOver())
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
    session.interrupt.setDeadline(StreamClock::now() + openingTime);
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
    const QSize size = session.pictureSize();
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
    const QSize size(frame.width, frame.height);
    session.setPictureSize(size);
    gaveFrames = true;
    if (session.still.isPending())
        fulfilStill(frame);
    QImage target = takeTarget(size);
    if (!target.isNull() && converter.convert(frame, {session.flip, session.mirror}, &target))
        session.sink.deliver(std::move(target));
    session.opened.settle(true);
}

QImage StreamPlayback::takeTarget(const QSize& size)
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
    if (!still.isNull() && converter.convert(frame, {session.flip, session.mirror}, &still))
        session.still.fulfil(still);
}

/// False when the stream was cancelled meanwhile. Frames of a live source are due as they come.
bool StreamPlayback::waitUntilDue(int64_t timeStamp)
{
    if (!demuxer.needsPacing())
        return true;
    std::optional<double> seconds;
    if (timeStamp != AV_NOPTS_VALUE)
        seconds = double(timeStamp) * av_q2d(demuxer.timeBase());
    return session.interrupt.sleepUntil(clock.due(seconds, StreamClock::now()));
}

} // namespace zolens
