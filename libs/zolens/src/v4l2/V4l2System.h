#pragma once

#include <poll.h>
#include <sys/types.h>

#include <cstddef>
#include <memory>

namespace zolens {

/// The system calls by which a video device is used. Results and `errno` are those of the calls of
/// the same names. Thread-safe.
class V4l2System
{
public:
    virtual ~V4l2System();

    /// Opens for reading and writing; later calls do not wait for frames.
    virtual int open(const char* path) = 0;
    virtual int close(int descriptor) = 0;
    virtual int ioctl(int descriptor, unsigned long request, void* argument) = 0;
    virtual int poll(pollfd* descriptors, nfds_t count, int milliseconds) = 0;
    /// Maps a frame buffer, shared with the driver.
    virtual void* mmap(std::size_t length, int descriptor, off_t offset) = 0;
    virtual int munmap(void* address, std::size_t length) = 0;
};

/// The system calls of the kernel that the program runs on.
std::shared_ptr<V4l2System> kernelV4l2();

} // namespace zolens
