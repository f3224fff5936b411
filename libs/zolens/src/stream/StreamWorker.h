#pragma once

#include <memory>
#include <thread>

namespace zolens {

struct StreamSession;

/// The thread that keeps a session supplied with frames: connects, and connects anew when the
/// source ends or stalls, until the session is cancelled. A source that cannot be opened the first
/// time is given up. Lives on the GUI thread.
class StreamWorker final
{
public:
    explicit StreamWorker(std::shared_ptr<StreamSession> streamSession);
    /// Cancels. A thread that hangs in the system, such as in a name look-up, is left to end by
    /// itself, which takes nothing with it but the session.
    ~StreamWorker();

private:
    std::shared_ptr<StreamSession> session;
    std::thread thread;
};

} // namespace zolens
