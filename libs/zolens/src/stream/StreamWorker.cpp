#include "StreamWorker.h"

#include "StreamLog.h"
#include "StreamPlayback.h"
#include "StreamSession.h"

#include <pthread.h>

namespace zolens {
namespace {

constexpr std::chrono::milliseconds endingTime(350);

void playOnce(StreamSession& session)
{
    StreamPlayback playback(session);
    if (!playback.open())
        return;
    qCInfo(streamLog).noquote() << "Stream is up:" << session.url.displayName();
    playback.run();
}

void keepPlaying(StreamSession& session)
{
    ReconnectPause pause;
    StreamClock::time_point begun;
    StreamClock::time_point ended;
    do {
        begun = StreamClock::now();
        playOnce(session);
        session.opened.settle(false);
        ended = StreamClock::now();
        qCInfo(streamLog).noquote() << "Stream is down:" << session.url.displayName();
    } while (session.opened.await({}).value_or(false) &&
             session.interrupt.sleepUntil(ended + pause.next(ended - begun)));
}

void runThread(const std::shared_ptr<StreamSession>& session)
{
    pthread_setname_np(pthread_self(), "zolens-stream");
    keepPlaying(*session);
    session->finished.settle(true);
}

} // namespace

StreamWorker::StreamWorker(std::shared_ptr<StreamSession> streamSession)
    : session(std::move(streamSession)),
      thread(runThread, session)
{
}

StreamWorker::~StreamWorker()
{
    session->sink.shut();
    session->interrupt.cancel();
    if (session->finished.await(endingTime))
        thread.join();
    else
        thread.detach();
}

} // namespace zolens
