#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <thread>

namespace zolens {

/// Runs tasks one after the other on a thread of its own, for callers who cannot wait long. Once a
/// task takes longer than its caller waited, the thread is late until it is done with all it has.
class TaskThread final
{
public:
    TaskThread();
    /// A thread that hangs in a task is left to end by itself: tasks own what they use.
    ~TaskThread();
    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;

    /// False when the system has not left what it takes: it is late for ever then.
    bool isRunning() const { return thread.joinable(); }
    /// The result of the task; nothing when it does not come in time, and at once, without running
    /// it, while the thread is late.
    template <typename T>
    std::optional<T> ask(std::function<T()> task, std::chrono::milliseconds patience)
    {
        auto work = std::make_shared<std::packaged_task<T()>>(std::move(task));
        std::future<T> result = work->get_future();
        if (isLate())
            return std::nullopt;
        post([work] { (*work)(); });
        if (result.wait_for(patience) == std::future_status::ready)
            return result.get();
        noteDelay();
        return std::nullopt;
    }

    /// Runs the task sometime, also when the thread is late.
    void post(std::function<void()> task);
    /// To be told when a posted task took longer than its caller waited.
    void noteDelay();
    bool isLate() const;

private:
    class Queue;

    std::shared_ptr<Queue> queue;
    std::thread thread;
};

} // namespace zolens
