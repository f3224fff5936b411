#include "StreamCamera.h"

#include "StreamLog.h"
#include "StreamPlayback.h"
#include "StreamSession.h"

namespace zolens {
namespace {

void playOnce(StreamSession& session)
{
    StreamPlayback playback(session);
    if (!playback.open())
        return;
    qCInfo(streamLog).noquote() << "Stream is up:" << session.url.displayName();
    playback.run();
}

/// A source that cannot be opened the first time is given up; later it is tried for ever.
void keepPlaying(StreamSession& session)
{
    ReconnectPause pause;
    for (;;) {
        const auto begun = StreamClock::now();
        playOnce(session);
        session.opened.settle(false);
        qCInfo(streamLog).noquote() << "Stream is down:" << session.url.displayName();
        const bool wasUp = session.opened.await({}).value_or(false);
        if (!wasUp || !session.wake.sleepFor(pause.next(StreamClock::now() - begun)))
            return;
        ++session.restarts;
    }
}

void play(StreamSession& session)
{
    if (session.url.isAllowed())
        keepPlaying(session);
    else
        qCInfo(streamLog).noquote() << "Not a stream or video file:" << session.url.displayName();
}

} // namespace

StreamCamera::StreamCamera(const QString& text) : CaptureCamera(false), url(text) {}

CaptureWork StreamCamera::prepare(FrameSink* sink) const
{
    const auto shared = std::make_shared<StreamSession>(url, sink);
    return {shared, [shared] { play(*shared); }, "zolens-stream"};
}

} // namespace zolens
