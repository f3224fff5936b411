#include "UdevTestbed.h"

#include <umockdev.h>

#include <filesystem>
#include <stdexcept>

namespace {

struct Unref
{
    template <class T>
    void operator()(T* object) const
    {
        g_object_unref(object);
    }
};

template <class T>
using Owned = std::unique_ptr<T, Unref>;

void check(bool success, GError* error)
{
    if (!success)
        throw std::runtime_error(error ? error->message : "umockdev failed");
}

std::string nodePath(int number)
{
    return "/dev/video" + std::to_string(number);
}

/// In the format of umockdev-record.
std::string description(int number)
{
    return "P: " + UdevTestbed::usbDevice(number) +
           "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nA: idVendor=1234\nA: idProduct=5678\n\n"
           "P: " +
           UdevTestbed::usbInterface(number) +
           "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\n\n"
           "P: " +
           UdevTestbed::videoNode(number) + "\nN: video" + std::to_string(number) +
           "=00\nE: SUBSYSTEM=video4linux\nE: DEVNAME=" + nodePath(number) + "\nL: device=../..\n";
}

} // namespace

struct UdevTestbed::Private
{
    Owned<UMockdevTestbed> testbed{umockdev_testbed_new()};
};

UdevTestbed::UdevTestbed() : d(std::make_unique<Private>()) {}

UdevTestbed::~UdevTestbed() = default;

void UdevTestbed::addCamera(int number)
{
    GError* error = nullptr;
    check(umockdev_testbed_add_from_string(d->testbed.get(), description(number).c_str(), &error),
          error);
}

void UdevTestbed::removeCamera(int number)
{
    const std::unique_ptr<gchar, decltype(&g_free)> root(
        umockdev_testbed_get_root_dir(d->testbed.get()), &g_free);
    std::filesystem::remove(std::string(root.get()) + nodePath(number));
}

std::string UdevTestbed::usbDevice(int number)
{
    return "/devices/pci0000:00/usb1/1-" + std::to_string(number + 1);
}

std::string UdevTestbed::usbInterface(int number)
{
    return usbDevice(number) + "/1-" + std::to_string(number + 1) + ":1.0";
}

std::string UdevTestbed::videoNode(int number)
{
    return usbInterface(number) + "/video4linux/video" + std::to_string(number);
}

void UdevTestbed::tell(const std::string& device, const char* action)
{
    umockdev_testbed_uevent(d->testbed.get(), ("/sys" + device).c_str(), action);
}
