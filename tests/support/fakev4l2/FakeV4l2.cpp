#include "FakeV4l2.h"

#include <sys/mman.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>

namespace {

int failWith(int error)
{
    errno = error;
    return -1;
}

} // namespace

void FakeV4l2::plug(const QString& path, std::shared_ptr<FakeCamera> camera)
{
    const std::lock_guard<std::mutex> lock(mutex);
    nodes[path] = std::move(camera);
}

void FakeV4l2::unplug(const QString& path)
{
    std::shared_ptr<FakeCamera> camera;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        camera = nodes[path];
        nodes.erase(path);
    }
    camera->vanish();
}

void FakeV4l2::fail(unsigned long request, int error, int times)
{
    const std::lock_guard<std::mutex> lock(mutex);
    failures[request] = {error, times};
}

void FakeV4l2::before(unsigned long request, std::function<void()> action)
{
    const std::lock_guard<std::mutex> lock(mutex);
    actions[request] = std::move(action);
}

void FakeV4l2::beforeOpening(const QString& path, std::function<void()> action)
{
    const std::lock_guard<std::mutex> lock(mutex);
    openActions[path] = std::move(action);
}

int FakeV4l2::openHandles() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return int(handles.size());
}

bool FakeV4l2::isOpen(int descriptor) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return handles.count(descriptor) > 0;
}

int FakeV4l2::calls(unsigned long request) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    const auto found = counts.find(request);
    return found == counts.end() ? 0 : found->second;
}

int FakeV4l2::open(const char* path)
{
    std::function<void()> action;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        action = openActions[QString::fromUtf8(path)];
    }
    if (action)
        action();
    const std::lock_guard<std::mutex> lock(mutex);
    const auto found = nodes.find(QString::fromUtf8(path));
    if (found == nodes.end())
        return failWith(ENOENT);
    const int timer = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    handles[timer] = found->second;
    return timer;
}

int FakeV4l2::close(int descriptor)
{
    camera(descriptor)->release(descriptor);
    const std::lock_guard<std::mutex> lock(mutex);
    handles.erase(descriptor);
    return ::close(descriptor);
}

int FakeV4l2::injected(unsigned long request)
{
    std::function<void()> action;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        ++counts[request];
        action = actions[request];
    }
    if (action)
        action();
    const std::lock_guard<std::mutex> lock(mutex);
    auto& [error, times] = failures[request];
    return times > 0 ? (--times, error) : 0;
}

int FakeV4l2::ioctl(int descriptor, unsigned long request, void* argument)
{
    int error = injected(request);
    if (error == 0)
        error = camera(descriptor)->ioctl(descriptor, request, argument);
    return error == 0 ? 0 : failWith(error);
}

int FakeV4l2::poll(pollfd* descriptors, nfds_t count, int milliseconds)
{
    const int ready = ::poll(descriptors, count, milliseconds);
    const int error = errno;
    const auto device = camera(descriptors[0].fd);
    if (ready > 0 && descriptors[0].revents != 0 && device->isBroken())
        descriptors[0].revents = POLLIN | POLLERR;
    errno = error;
    return ready;
}

void* FakeV4l2::mmap(std::size_t length, int descriptor, off_t offset)
{
    if (mmapError != 0) {
        errno = mmapError;
        return MAP_FAILED;
    }
    const int memory = camera(descriptor)->memory();
    return ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, memory, offset);
}

int FakeV4l2::munmap(void* address, std::size_t length)
{
    return ::munmap(address, length);
}

std::shared_ptr<FakeCamera> FakeV4l2::camera(int descriptor) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return handles.at(descriptor);
}
