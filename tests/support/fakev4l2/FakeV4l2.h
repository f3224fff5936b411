#pragma once

#include "FakeCamera.h"
#include "v4l2/V4l2System.h"

#include <QString>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

/// Video devices in the memory of the test. They behave as the kernel's driver for USB cameras
/// does: its order of calls, its error numbers, frames at the rate of the camera. Calls can be made
/// to fail or to hang.
class FakeV4l2 final : public zolens::V4l2System
{
public:
    void plug(const QString& path, std::shared_ptr<FakeCamera> camera);
    /// Open descriptors stay, as on a real machine, but give only errors.
    void unplug(const QString& path);

    /// The next so many calls of that ioctl fail.
    void fail(unsigned long request, int error, int times = 1);
    /// Runs before that ioctl, on the caller's thread.
    void before(unsigned long request, std::function<void()> action);
    /// The same for the opening of that node.
    void beforeOpening(const QString& path, std::function<void()> action);
    void failMmap(int error) { mmapError = error; }

    int openHandles() const;
    bool isOpen(int descriptor) const;
    /// Calls of that ioctl so far.
    int calls(unsigned long request) const;

    int open(const char* path) override;
    int close(int descriptor) override;
    int ioctl(int descriptor, unsigned long request, void* argument) override;
    int poll(pollfd* descriptors, nfds_t count, int milliseconds) override;
    void* mmap(std::size_t length, int descriptor, off_t offset) override;
    int munmap(void* address, std::size_t length) override;

private:
    int injected(unsigned long request);
    std::shared_ptr<FakeCamera> camera(int descriptor) const;

    mutable std::mutex mutex;
    std::map<QString, std::shared_ptr<FakeCamera>> nodes;
    std::map<int, std::shared_ptr<FakeCamera>> handles;
    std::map<unsigned long, std::pair<int, int>> failures; ///< Error number and times.
    std::map<unsigned long, std::function<void()>> actions;
    std::map<QString, std::function<void()>> openActions;
    std::map<unsigned long, int> counts;
    std::atomic<int> mmapError{0};
};
