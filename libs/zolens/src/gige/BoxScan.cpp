#include "BoxScan.h"

#include "BroadcastSocket.h"
#include "StartThread.h"

#include <pthread.h>

namespace zolens {

BoxScan::BoxScan(std::chrono::milliseconds scanInterval) : interval(scanInterval)
{
    if (wakeUp.descriptor() >= 0)
        thread = startThread([this] { run(); });
}

BoxScan::~BoxScan()
{
    wakeUp.cancel();
    if (thread.joinable())
        thread.join();
}

std::vector<_tag_VideoDeviceInfo> BoxScan::boxes() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return list.devices();
}

void BoxScan::run()
{
    pthread_setname_np(pthread_self(), "zolens-scan");
    BroadcastSocket socket;
    while (!wakeUp.isCancelled()) {
        socket.send(boxQuestion.data(), boxQuestion.size(), boxPort);
        collectAnswers(&socket, Clock::now() + interval);
        const std::lock_guard<std::mutex> lock(mutex);
        list.endRound();
    }
}

void BoxScan::collectAnswers(BroadcastSocket* socket, Clock::time_point end)
{
    for (auto now = Clock::now(); now < end && !wakeUp.isCancelled(); now = Clock::now())
        socket->receive(wakeUp.descriptor(),
                        std::chrono::ceil<std::chrono::milliseconds>(end - now),
                        [this](const auto* data, std::size_t size) { takeAnswer(data, size); });
}

void BoxScan::takeAnswer(const std::uint8_t* data, std::size_t size)
{
    const std::optional<NetworkBox> box = readBoxAnswer(data, size);
    if (!box)
        return;
    const std::lock_guard<std::mutex> lock(mutex);
    list.heard(*box);
}

} // namespace zolens
