#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <thread>

namespace zolens {

/// Runs tasks one after the other on a thread of its own, for callers who cannot wait long. Once a
/// task takes longer than its caller waited, later ones are refused until it is done.
class TaskThread final
{
public:
    TaskThread();
    /// A thread that hangs in a task is left to end by itself: tasks own what they use.
    ~TaskThread();
    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;

    /// The result of the task; nothing when it was refused or does not come in time.
    template <typename T>
    std::optional<T> ask(std::function<T()> task, std::chrono::milliseconds patience)
    {
        auto work = std::make_shared<std::packaged_task<T()>>(std::move(task));
        std::future<T> result = work->get_future();
        if (!post([work] { (*work)(); }))
            return std::nullopt;
        if (result.wait_for(patience) == std::future_status::ready)
            return result.get();
        noteDelay();
        return std::nullopt;
    }

private:
    class Queue;

    bool post(std::function<void()> task);
    void noteDelay();

    std::shared_ptr<Queue> queue;
    std::thread thread;
};

} // namespace zolens
