#include "V4l2System.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace zolens {
namespace {

class KernelV4l2 final : public V4l2System
{
public:
    int open(const char* path) override { return ::open(path, O_RDWR | O_NONBLOCK | O_CLOEXEC); }
    int close(int descriptor) override { return ::close(descriptor); }
    int ioctl(int descriptor, unsigned long request, void* argument) override
    {
        return ::ioctl(descriptor, request, argument);
    }
    int poll(pollfd* descriptors, nfds_t count, int milliseconds) override
    {
        return ::poll(descriptors, count, milliseconds);
    }
    void* mmap(std::size_t length, int descriptor, off_t offset) override
    {
        return ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, offset);
    }
    int munmap(void* address, std::size_t length) override { return ::munmap(address, length); }
};

} // namespace

V4l2System::~V4l2System() = default;

std::shared_ptr<V4l2System> kernelV4l2()
{
    static const auto system = std::make_shared<KernelV4l2>();
    return system;
}

} // namespace zolens
