// To be loaded before a program, with umockdev's library after it: a USB camera that only this
// program sees. Plugged in from the start, then in and out as the words tell that come through the
// named pipe ORVO_USB_PORT.

#include "UsbPort.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>

namespace {

/// Null until the library is loaded, and from the end of the program on.
UsbPort* port = nullptr;
/// Whether this thread is in a call on the camera: what that needs comes from the machine.
thread_local bool onCamera = false;

class CameraCall final
{
public:
    CameraCall() { onCamera = true; }
    ~CameraCall() { onCamera = false; }
    CameraCall(const CameraCall&) = delete;
    CameraCall& operator=(const CameraCall&) = delete;

    FakeV4l2* operator->() const { return &port->system(); }
};

bool isCameraNode(const char* path)
{
    const char prefix[] = "/dev/video";
    return port && !onCamera && std::strncmp(path, prefix, sizeof prefix - 1) == 0;
}

bool isCamera(int descriptor)
{
    return port && !onCamera && port->system().isOpen(descriptor);
}

/// The function of that name that the program would have without this library.
template <typename Function>
Function* next(Function*, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void listen(const char* pipe)
{
    std::ifstream words(pipe);
    for (std::string word; words >> word && port;)
        port->obey(word);
}

class Loaded final
{
public:
    Loaded()
    {
        unsetenv("LD_PRELOAD"); // Not for the programs that this one starts.
        port = &itsPort;
        itsPort.plug();
        if (const char* pipe = std::getenv("ORVO_USB_PORT"))
            std::thread(listen, pipe).detach();
    }
    ~Loaded() { port = nullptr; }
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;

private:
    UsbPort itsPort;
};

const Loaded loaded;

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    if (isCameraNode(path))
        return CameraCall()->open(path);
    static const auto function = next(&open, "open");
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return function(path, flags, mode);
}

int close(int descriptor)
{
    if (isCamera(descriptor))
        return CameraCall()->close(descriptor);
    static const auto function = next(&close, "close");
    return function(descriptor);
}

int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    std::va_list rest;
    va_start(rest, request);
    void* argument = va_arg(rest, void*);
    va_end(rest);
    if (isCamera(descriptor))
        return CameraCall()->ioctl(descriptor, request, argument);
    static const auto function = next(&ioctl, "ioctl");
    return function(descriptor, request, argument);
}

// The system declares that poll() reads nothing of its descriptors, hence another name here.
int pollFirst(pollfd* descriptors, nfds_t count, int milliseconds) __asm__("poll");

int pollFirst(pollfd* descriptors, nfds_t count, int milliseconds)
{
    if (count > 0 && isCamera(descriptors[0].fd))
        return CameraCall()->poll(descriptors, count, milliseconds);
    static const auto function = next(&poll, "poll");
    return function(descriptors, count, milliseconds);
}

void* mmap(void* address, size_t length, int protection, int flags, int descriptor,
           off_t offset) noexcept
{
    if (isCamera(descriptor))
        return CameraCall()->mmap(length, descriptor, offset);
    static const auto function = next(&mmap, "mmap");
    return function(address, length, protection, flags, descriptor, offset);
}

} // extern "C"
