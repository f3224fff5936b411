#include "CaptureWorker.h"

#include "CaptureSession.h"
#include "StartThread.h"

#include <pthread.h>

namespace zolens {
namespace {

/// A stream takes up to 100 ms to notice, and as much again around its last word to the server.
constexpr std::chrono::milliseconds endingTime(350);

void answerAllWhoWait(CaptureSession& session)
{
    session.setControls(nullptr);
    session.still.end();
    session.opened.settle(false);
    session.finished.settle(true);
}

void runThread(CaptureWork& work)
{
    pthread_setname_np(pthread_self(), work.threadName);
    work.run();
    work.run = nullptr;
    answerAllWhoWait(*work.session);
}

} // namespace

CaptureWorker::CaptureWorker(const CaptureWork& work)
    : session(work.session),
      thread(startThread([own = work]() mutable { runThread(own); }))
{
    if (!thread.joinable())
        answerAllWhoWait(*session);
}

CaptureWorker::~CaptureWorker()
{
    session->sink.shut();
    session->wake.cancel();
    if (!thread.joinable())
        return;
    if (session->finished.await(endingTime))
        thread.join();
    else
        thread.detach();
}

} // namespace zolens
