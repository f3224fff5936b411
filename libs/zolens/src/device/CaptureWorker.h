#pragma once

#include <functional>
#include <memory>
#include <thread>

namespace zolens {

struct CaptureSession;

/// What the thread of a device does.
struct CaptureWork
{
    std::shared_ptr<CaptureSession> session;
    /// Opens the device, settles `opened`, and brings frames until the session is cancelled or the
    /// device is gone. Owns all that it uses.
    std::function<void()> run;
    const char* threadName = "";
};

/// The thread that keeps a session supplied with frames. Where the system has none left, the device
/// does not open. Lives on the GUI thread.
class CaptureWorker final
{
public:
    explicit CaptureWorker(const CaptureWork& work);
    /// Cancels. A thread that hangs in a device is left to end by itself, which takes nothing with
    /// it but the session.
    ~CaptureWorker();

private:
    const std::shared_ptr<CaptureSession> session;
    std::thread thread;
};

} // namespace zolens
