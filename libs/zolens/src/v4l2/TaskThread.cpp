#include "TaskThread.h"

#include "stream/Outcome.h"

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
    bool put(std::function<void()>&& task)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (delayed)
            return false;
        tasks.push_back(std::move(task));
        changed.notify_all();
        return true;
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

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> tasks;
    bool busy = false;
    bool delayed = false;
    bool ending = false;
};

TaskThread::TaskThread()
    : queue(std::make_shared<Queue>()),
      thread([tasks = queue] { tasks->run(); })
{
}

TaskThread::~TaskThread()
{
    queue->end();
    if (queue->ended.await(endingTime))
        thread.join();
    else
        thread.detach();
}

bool TaskThread::post(std::function<void()> task)
{
    return queue->put(std::move(task));
}

void TaskThread::noteDelay()
{
    queue->noteDelay();
}

} // namespace zolens
