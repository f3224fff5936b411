#include "TaskThread.h"

#include "Outcome.h"
#include "StartThread.h"

#include <pthread.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace zolens {
namespace {

constexpr std::chrono::milliseconds endingTime(100);

} // namespace

/// What the thread and its owner share.
class TaskThread::Queue final
{
public:
    void put(std::function<void()>&& task)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        tasks.push_back(std::move(task));
        changed.notify_all();
    }

    void run()
    {
        pthread_setname_np(pthread_self(), "zolens-control");
        while (auto task = take()) {
            task();
            task = nullptr;
            noteDone();
        }
        ended.settle(true);
    }

    void noteDelay()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        delayed = busy || !tasks.empty();
    }

    bool isDelayed() const
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return delayed;
    }

    void end()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        ending = true;
        changed.notify_all();
    }

    Outcome ended;

private:
    std::function<void()> take()
    {
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, [this] { return ending || !tasks.empty(); });
        if (ending)
            return nullptr;
        busy = true;
        std::function<void()> task = std::move(tasks.front());
        tasks.pop_front();
        return task;
    }

    void noteDone()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        busy = false;
        delayed = delayed && !tasks.empty();
    }

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> tasks;
    bool busy = false;
    bool delayed = false;
    bool ending = false;
};

TaskThread::TaskThread()
    : queue(std::make_shared<Queue>()),
      thread(startThread([tasks = queue] { tasks->run(); }))
{
}

TaskThread::~TaskThread()
{
    if (!isRunning())
        return;
    queue->end();
    if (queue->ended.await(endingTime))
        thread.join();
    else
        thread.detach();
}

void TaskThread::post(std::function<void()> task)
{
    queue->put(std::move(task));
}

void TaskThread::noteDelay()
{
    queue->noteDelay();
}

bool TaskThread::isLate() const
{
    return !isRunning() || queue->isDelayed();
}

} // namespace zolens
