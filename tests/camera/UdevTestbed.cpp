#include "UdevTestbed.h"

#include <linux/videodev2.h>

#include <umockdev.h>

#include <algorithm>
#include <filesystem>
#include <map>
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

v4l2_capability capability(const std::string& name)
{
    v4l2_capability answer = {};
    const std::size_t length = std::min(name.size(), sizeof(answer.card) - 1);
    std::copy_n(name.begin(), length, answer.card);
    answer.capabilities = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING | V4L2_CAP_DEVICE_CAPS;
    answer.device_caps = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
    return answer;
}

/// The driver: tells the name, `data`, and knows no other request.
gboolean answer(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer data)
{
    if (umockdev_ioctl_client_get_request(client) != VIDIOC_QUERYCAP) {
        umockdev_ioctl_client_complete(client, -1, ENOTTY);
        return TRUE;
    }
    v4l2_capability caps = capability(*static_cast<std::string*>(data));
    const Owned<UMockdevIoctlData> argument(umockdev_ioctl_data_resolve(
        umockdev_ioctl_client_get_arg(client), 0, sizeof(caps), nullptr));
    umockdev_ioctl_data_update(argument.get(), 0, reinterpret_cast<guint8*>(&caps), sizeof(caps));
    umockdev_ioctl_client_complete(client, 0, 0);
    return TRUE;
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
    std::map<int, std::string> names;
    std::map<int, Owned<UMockdevIoctlBase>> drivers;
};

UdevTestbed::UdevTestbed() : d(std::make_unique<Private>()) {}

UdevTestbed::~UdevTestbed() = default;

void UdevTestbed::addCamera(int number, const std::string& name)
{
    GError* error = nullptr;
    UMockdevTestbed* testbed = d->testbed.get();
    check(umockdev_testbed_add_from_string(testbed, description(number).c_str(), &error), error);

    Owned<UMockdevIoctlBase>& driver = d->drivers[number];
    driver.reset(umockdev_ioctl_base_new());
    d->names[number] = name;
    g_signal_connect(driver.get(), "handle-ioctl", G_CALLBACK(answer), &d->names[number]);
    const std::string node = nodePath(number);
    check(umockdev_testbed_attach_ioctl(testbed, node.c_str(), driver.get(), &error), error);
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
