#include "camera/DeviceNotifications.h"

#include <QSocketNotifier>
#include <QTimer>

#include <libudev.h>

namespace {

constexpr int settlingTime = 1000; ///< Milliseconds from the arrival of a device to its answers.

struct Release
{
    void operator()(udev* context) const { udev_unref(context); }
    void operator()(udev_monitor* monitor) const { udev_monitor_unref(monitor); }
    void operator()(udev_device* device) const { udev_device_unref(device); }
};

template <class T>
using Owned = std::unique_ptr<T, Release>;

/// USB devices count beside those for video, since USB3 Vision cameras have no driver for video.
bool listenToCameras(udev_monitor* monitor)
{
    return udev_monitor_filter_add_match_subsystem_devtype(monitor, "video4linux", nullptr) >= 0 &&
           udev_monitor_filter_add_match_subsystem_devtype(monitor, "usb", "usb_device") >= 0 &&
           udev_monitor_enable_receiving(monitor) >= 0;
}

/// Hears of devices once udev has set them up. Where no udev runs, as in most containers, nothing
/// is heard.
class UdevNotifications final : public DeviceNotifications
{
public:
    UdevNotifications(Owned<udev> udevContext, Owned<udev_monitor> listeningMonitor)
        : context(std::move(udevContext)),
          monitor(std::move(listeningMonitor)),
          notifier(udev_monitor_get_fd(monitor.get()), QSocketNotifier::Read)
    {
        settling.setSingleShot(true);
        settling.setInterval(settlingTime);
        connect(&settling, &QTimer::timeout, this, &UdevNotifications::devicesChanged);
        connect(&notifier, &QSocketNotifier::activated, this, &UdevNotifications::readEvents);
    }

private:
    /// One camera makes several events, which are told as one change.
    void readEvents()
    {
        bool gone = false;
        while (const Owned<udev_device> device{udev_monitor_receive_device(monitor.get())}) {
            const QLatin1String action(udev_device_get_action(device.get()));
            if (action == QLatin1String("add"))
                settling.start();
            else if (action == QLatin1String("remove"))
                gone = true;
        }
        if (gone)
            emit devicesChanged();
    }

    Owned<udev> context;
    Owned<udev_monitor> monitor;
    QSocketNotifier notifier;
    QTimer settling;
};

} // namespace

std::unique_ptr<DeviceNotifications> DeviceNotifications::registerFor(QWidget*)
{
    Owned<udev> context(udev_new());
    if (!context)
        return nullptr;
    Owned<udev_monitor> monitor(udev_monitor_new_from_netlink(context.get(), "udev"));
    if (!monitor || !listenToCameras(monitor.get()))
        return nullptr;
    return std::make_unique<UdevNotifications>(std::move(context), std::move(monitor));
}
