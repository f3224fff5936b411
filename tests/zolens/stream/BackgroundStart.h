#pragma once

#include <zolens/CWCamera.h>

#include <atomic>
#include <thread>

/// Starts a camera on a thread of its own, so that the caller can do something meanwhile.
class BackgroundStart final
{
public:
    BackgroundStart(CWCamera* camera, zolens::FrameSink* sink)
        : thread([=] {
              result = camera->start(sink);
              over = true;
          })
    {
    }
    ~BackgroundStart() { join(); }
    BackgroundStart(const BackgroundStart&) = delete;
    BackgroundStart& operator=(const BackgroundStart&) = delete;

    /// Waits for the end of the start; whether it succeeded.
    bool join()
    {
        if (thread.joinable())
            thread.join();
        return result;
    }

    bool isOver() const { return over; }

private:
    bool result = true;
    std::atomic<bool> over{false};
    std::thread thread;
};
