#include "V4l2Worker.h"

#include "CameraControls.h"
#include "V4l2Capture.h"
#include "V4l2Session.h"

#include <pthread.h>

namespace zolens {
namespace {

constexpr std::chrono::milliseconds endingTime(350);

void runThread(const std::shared_ptr<V4l2Session>& session)
{
    pthread_setname_np(pthread_self(), "zolens-v4l2");
    {
        V4l2Capture capture(*session);
        if (capture.open()) {
            session->opened.settle(true);
            capture.run();
        }
        session->setControls(nullptr);
        session->still.fulfil(QImage());
    }
    session->opened.settle(false);
    session->finished.settle(true);
}

} // namespace

V4l2Worker::V4l2Worker(std::shared_ptr<V4l2Session> v4l2Session)
    : session(std::move(v4l2Session)),
      thread(runThread, session)
{
}

V4l2Worker::~V4l2Worker()
{
    session->sink.shut();
    session->wake.cancel();
    if (session->finished.await(endingTime))
        thread.join();
    else
        thread.detach();
}

} // namespace zolens
