#pragma once

#include <memory>
#include <thread>

namespace zolens {

struct V4l2Session;

/// The thread that keeps a session supplied with frames. Lives on the GUI thread.
class V4l2Worker final
{
public:
    explicit V4l2Worker(std::shared_ptr<V4l2Session> v4l2Session);
    /// Cancels. A thread that hangs in a driver is left to end by itself, which takes nothing with
    /// it but the session.
    ~V4l2Worker();

private:
    std::shared_ptr<V4l2Session> session;
    std::thread thread;
};

} // namespace zolens
