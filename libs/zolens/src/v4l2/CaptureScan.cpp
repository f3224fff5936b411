#include "CaptureScan.h"

#include "StartThread.h"

#include <pthread.h>

#include <atomic>
#include <future>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace zolens {
namespace {

using Answer = std::optional<CaptureNode>;
using Clock = std::chrono::steady_clock;

struct Query
{
    std::promise<Answer> promise;
    std::shared_future<Answer> answer = promise.get_future().share();
    std::atomic<bool> late{false};
};

Answer await(Query& query, Clock::time_point deadline)
{
    const auto end = query.late ? Clock::time_point() : deadline;
    if (query.answer.wait_until(end) == std::future_status::ready)
        return query.answer.get();
    query.late = true;
    return std::nullopt;
}

} // namespace

/// Those under way. Their threads own them too, and may outlive the scan.
class CaptureScan::Queries final : public std::enable_shared_from_this<Queries>
{
public:
    /// The one under way, or a new one.
    std::shared_ptr<Query> ask(const V4l2Host& host, int number)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        const QString path = nodePath(host, number);
        if (const auto found = underWay.find(path); found != underWay.end())
            return found->second;
        auto query = std::make_shared<Query>();
        if (start(query, host, number))
            underWay[path] = query;
        else
            query->promise.set_value(std::nullopt);
        return query;
    }

private:
    /// False when the system has no thread left.
    bool start(const std::shared_ptr<Query>& query, const V4l2Host& host, int number)
    {
        std::thread thread = startThread([all = shared_from_this(), query, host, number] {
            pthread_setname_np(pthread_self(), "zolens-scan");
            all->settle(*query, host, number);
        });
        if (!thread.joinable())
            return false;
        thread.detach();
        return true;
    }

    /// Whoever has the answer may ask anew.
    void settle(Query& query, const V4l2Host& host, int number)
    {
        Answer answer = captureNode(host, number);
        {
            const std::lock_guard<std::mutex> lock(mutex);
            underWay.erase(nodePath(host, number));
        }
        query.promise.set_value(std::move(answer));
    }

    std::mutex mutex;
    std::map<QString, std::shared_ptr<Query>> underWay; ///< By the paths of the nodes.
};

CaptureScan::CaptureScan() : queries(std::make_shared<Queries>()) {}

CaptureScan::~CaptureScan() = default;

std::vector<CaptureNode> CaptureScan::nodes(const V4l2Host& host,
                                            std::chrono::milliseconds patience)
{
    const auto deadline = Clock::now() + patience;
    std::vector<std::shared_ptr<Query>> asked;
    for (const int number : nodeNumbers(host))
        asked.push_back(queries->ask(host, number));
    std::vector<CaptureNode> nodes;
    for (const auto& query : asked) {
        if (auto node = await(*query, deadline))
            nodes.push_back(std::move(*node));
    }
    return nodes;
}

} // namespace zolens
