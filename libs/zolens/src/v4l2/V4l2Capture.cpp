#include "V4l2Capture.h"

#include "CameraControls.h"
#include "DecoderTeam.h"
#include "FrameDecoder.h"
#include "V4l2Device.h"
#include "V4l2Log.h"
#include "VideoFormats.h"

#include <cerrno>
#include <cstring>
#include <iterator>
#include <utility>

namespace zolens {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds releaseTime(1000);
constexpr milliseconds releasePause(100);
/// Before a driver is asked again that promised a frame and had none.
constexpr milliseconds emptyPause(5);

bool isGone(int error)
{
    return error == ENODEV || error == ENXIO || error == EBADF;
}

} // namespace

V4l2Capture::V4l2Capture(V4l2Session& v4l2Session) : session(v4l2Session) {}

V4l2Capture::~V4l2Capture() = default;

bool V4l2Capture::open()
{
    if (!identify())
        return false;
    session.offer(videoFormats(*device));
    if (session.modes.sizes().empty())
        return false;
    session.setControls(std::make_shared<CameraControls>(device));
    stream = std::make_unique<V4l2Stream>(device);
    const int error = startPatiently();
    if (error != 0)
        qCInfo(v4l2Log, "%s gives no pictures: %s", session.info.name.c_str(),
               std::strerror(error));
    return error == 0;
}

int V4l2Capture::startPatiently()
{
    const auto end = StreamClock::now() + releaseTime;
    int error = startPreview();
    while (error != 0 && isWorthAnotherTry(error, end))
        error = startPreview();
    return error;
}

/// A device that was closed just before may be busy for a moment, and one that shares its bus with
/// others may have room for smaller pictures only.
bool V4l2Capture::isWorthAnotherTry(int error, StreamClock::time_point end)
{
    if (error == EBUSY)
        return StreamClock::now() < end && session.wake.sleepFor(releasePause);
    return error == ENOSPC && !session.wake.isCancelled() && session.modes.selectSmallerSize();
}

bool V4l2Capture::identify()
{
    const V4l2Address& address = session.address;
    const auto node = captureNode(address.host, address.number);
    const auto info = node ? describe(*node, address.filter) : std::nullopt;
    if (!info || info->type != address.type)
        return false;
    session.info = *info;
    device = std::make_shared<V4l2Device>(address.host.system, node->path);
    return device->isOpen();
}

void V4l2Capture::run()
{
    for (;;) {
        begun = StreamClock::now();
        const CaptureEnd end = capture();
        stream->stop();
        if (end == CaptureEnd::Cancelled || end == CaptureEnd::Gone)
            break;
        if (end == CaptureEnd::LargeStill)
            takeStill();
        if (end == CaptureEnd::Stalled && !waitOut())
            break;
        if (!resume())
            break;
    }
    qCInfo(v4l2Log, "%s ended, %llu damaged and %llu dropped frames", session.info.name.c_str(),
           session.damaged.load(), session.dropped.load());
}

/// Waits before the next start, longer after each stall. False when it was cancelled meanwhile.
bool V4l2Capture::waitOut()
{
    ++session.restarts;
    const auto time = pause.next(StreamClock::now() - begun);
    return session.wake.sleepFor(std::chrono::ceil<milliseconds>(time));
}

/// Takes the preview up, as it was before where the device refuses the new mode. False when the
/// device is gone or it was cancelled.
bool V4l2Capture::resume()
{
    while (!session.wake.isCancelled()) {
        const VideoMode asked = session.modes.preview();
        const int error = startPreview();
        if (error == 0)
            return true;
        if (isGone(error))
            return false;
        begun = StreamClock::now();
        if (asked != running)
            session.correct(asked, running);
        else if (!waitOut())
            return false;
    }
    return false;
}

int V4l2Capture::startStream(const VideoMode& mode)
{
    const VideoFormat format = session.modes.format(mode.format);
    const int error = stream->start(*findPixelFormat(format.code), mode.size);
    if (error != 0)
        return error;
    decoder = makeDecoder(stream->layout());
    if (decoder)
        return 0;
    stream->stop();
    return ENOTSUP;
}

int V4l2Capture::startPreview()
{
    const VideoMode asked = session.modes.preview();
    const int error = startStream(asked);
    if (error != 0)
        return error;
    running = {asked.format, stream->layout().size};
    session.correct(asked, running);
    return 0;
}

CaptureEnd V4l2Capture::capture()
{
    DecoderTeam team(session, *stream, std::move(decoder));
    if (!team.isRunning())
        return CaptureEnd::Stalled;
    auto watchdog = FrameWatchdog::startedAt(StreamClock::now(), stream->frameTime());
    DriverFrame frame;
    auto interruption = session.interruption(running);
    for (; !interruption; interruption = session.interruption(running)) {
        const int error = await(watchdog, &frame);
        if (error == EAGAIN)
            continue;
        if (error != 0)
            return isGone(error) ? CaptureEnd::Gone : CaptureEnd::Stalled;
        if (pass(frame, &team))
            watchdog.frameArrived(StreamClock::now());
    }
    return *interruption;
}

/// Whether the device seems to be well. One that sends nothing but damaged frames is taken for
/// stalled.
bool V4l2Capture::pass(const DriverFrame& frame, DecoderTeam* team)
{
    if (!frame.damaged) {
        team->submit(frame);
        return !team->seesOnlyDamage();
    }
    ++session.damaged;
    stream->giveBack(frame);
    return false;
}

/// 0 with a frame, EAGAIN when there is something else to look at, ETIMEDOUT after the deadline.
int V4l2Capture::await(const FrameWatchdog& watchdog, DriverFrame* frame)
{
    const auto deadline = watchdog.deadline() + session.exposureTime();
    pollfd sources[] = {{device->descriptor(), POLLIN, 0}, {session.wake.descriptor(), POLLIN, 0}};
    const int count = device->system().poll(sources, std::size(sources), pollTimeUntil(deadline));
    if (count == 0)
        return ETIMEDOUT;
    if (count < 0)
        return errno == EINTR ? EAGAIN : errno;
    if (sources[1].revents != 0)
        session.wake.clear();
    const int error = takeReady(sources[0].revents, frame);
    return error == EAGAIN && StreamClock::now() > deadline ? ETIMEDOUT : error;
}

int V4l2Capture::takeReady(short events, DriverFrame* frame)
{
    if (events == 0)
        return EAGAIN;
    const int error = stream->take(frame);
    if (error != EAGAIN)
        return error;
    const bool failed = events & (POLLERR | POLLHUP | POLLNVAL);
    if (!failed)
        session.wake.sleepFor(emptyPause);
    return failed ? EIO : EAGAIN;
}

void V4l2Capture::takeStill()
{
    const int error = startStream(session.modes.still());
    session.still.fulfil(error == 0 ? stillPicture() : QImage());
    stream->stop();
}

QImage V4l2Capture::stillPicture()
{
    QImage picture(stream->layout().size, QImage::Format_RGB32);
    auto watchdog = FrameWatchdog::startedAt(StreamClock::now(), stream->frameTime());
    const int settling = session.settlingFrames(stream->frameTime());
    DriverFrame frame;
    for (int frames = 0; session.still.isPending() && !session.wake.isCancelled();) {
        const int error = await(watchdog, &frame);
        if (error == EAGAIN)
            continue;
        if (error != 0)
            break;
        const bool settled = ++frames > settling;
        const auto result = decodeStill(frame, settled, &picture);
        stream->giveBack(frame);
        if (result != FrameDecoder::Result::Damaged)
            watchdog.frameArrived(StreamClock::now());
        if (!settled || result != FrameDecoder::Result::Picture)
            continue;
        session.look.apply(&picture);
        return picture;
    }
    return {};
}

FrameDecoder::Result V4l2Capture::decodeStill(const DriverFrame& frame, bool settled,
                                              QImage* picture)
{
    if (frame.damaged)
        return FrameDecoder::Result::Damaged;
    if (!settled && !decoder->needsEveryFrame())
        return FrameDecoder::Result::Nothing;
    return decoder->decode(frame, session.look.orientation(), picture);
}

} // namespace zolens
