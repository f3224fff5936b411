#include "CaptureWorker.h"

#include "CaptureSession.h"

#include <pthread.h>

namespace zolens {
namespace {

/// A stream takes up to 100 ms to notice, and as much again around its last word to the server.
constexpr std::chrono::milliseconds endingTime(350);

void runThread(CaptureWork work)
{
    pthread_setname_np(pthread_self(), work.threadName);
    work.run();
    work.run = nullptr;
    work.session->setControls(nullptr);
    work.session->still.fulfil(QImage());
    work.session->opened.settle(false);
    work.session->finished.settle(true);
}

} // namespace

CaptureWorker::CaptureWorker(const CaptureWork& work)
    : session(work.session),
      thread(runThread, work)
{
}

CaptureWorker::~CaptureWorker()
{
    session->sink.shut();
    session->wake.cancel();
    if (session->finished.await(endingTime))
        thread.join();
    else
        thread.detach();
}

} // namespace zolens
