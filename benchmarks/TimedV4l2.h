#pragma once

#include "v4l2/V4l2System.h"

#include <linux/videodev2.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <ctime>

namespace bench {

/// Processor time in milliseconds, of the calling thread or of the whole process.
inline double processorTime(clockid_t clock)
{
    timespec time = {};
    clock_gettime(clock, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// Passes on to a fake of the system and tells when a frame was handed out, and what the fake took.
class TimedV4l2 final : public zolens::V4l2System
{
public:
    using Clock = std::chrono::steady_clock;

    explicit TimedV4l2(std::shared_ptr<zolens::V4l2System> other) : fake(std::move(other)) {}

    /// Of the newest frame.
    Clock::time_point handedOut() const { return frameTime; }
    /// Processor time of the fake in milliseconds.
    double ownTime() const { return double(nanoseconds) / 1e6; }

    int open(const char* path) override { return fake->open(path); }
    int close(int descriptor) override { return fake->close(descriptor); }
    int ioctl(int descriptor, unsigned long request, void* argument) override
    {
        const double before = processorTime(CLOCK_THREAD_CPUTIME_ID);
        const int result = fake->ioctl(descriptor, request, argument);
        nanoseconds += int64_t((processorTime(CLOCK_THREAD_CPUTIME_ID) - before) * 1e6);
        if (result == 0 && request == VIDIOC_DQBUF)
            frameTime = Clock::now();
        return result;
    }
    int poll(pollfd* descriptors, nfds_t count, int milliseconds) override
    {
        return fake->poll(descriptors, count, milliseconds);
    }
    void* mmap(std::size_t length, int descriptor, off_t offset) override
    {
        return fake->mmap(length, descriptor, offset);
    }
    int munmap(void* address, std::size_t length) override { return fake->munmap(address, length); }

private:
    const std::shared_ptr<zolens::V4l2System> fake;
    std::atomic<Clock::time_point> frameTime{Clock::time_point()};
    std::atomic<int64_t> nanoseconds{0};
};

} // namespace bench
