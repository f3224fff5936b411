#include "camera/DeviceNotifications.h"

#include <QThread>
#include <QWidget>

#include <qt_windows.h>

#include <dbt.h>

namespace {

constexpr unsigned long settlingTime = 1; ///< Seconds from the arrival of a device to its answers.

/// GUID_DEVINTERFACE_USB_DEVICE, whose own header needs the driver kit.
constexpr GUID usbDevices = {
    0xa5dcbf10, 0x6530, 0x11d2, {0x90, 0x1f, 0x00, 0xc0, 0x4f, 0xb9, 0x51, 0xed}};

class WindowNotifications final : public DeviceNotifications
{
public:
    explicit WindowNotifications(HDEVNOTIFY notificationHandle) : handle(notificationHandle) {}
    ~WindowNotifications() override { UnregisterDeviceNotification(handle); }
    Q_DISABLE_COPY_MOVE(WindowNotifications)

    /// Holds the window up while a new device settles.
    void hearMessage(void* message) override
    {
        const MSG* told = static_cast<const MSG*>(message);
        if (told->message != WM_DEVICECHANGE)
            return;
        if (told->wParam == DBT_DEVICEARRIVAL) {
            QThread::sleep(settlingTime);
            emit devicesChanged();
        } else if (told->wParam == DBT_DEVICEREMOVECOMPLETE) {
            emit devicesChanged();
        }
    }

private:
    HDEVNOTIFY handle;
};

} // namespace

std::unique_ptr<DeviceNotifications> DeviceNotifications::registerFor(QWidget* window)
{
    DEV_BROADCAST_DEVICEINTERFACE_W filter = {};
    filter.dbcc_size = sizeof(filter);
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    filter.dbcc_classguid = usbDevices;
    const HDEVNOTIFY handle = RegisterDeviceNotificationW(reinterpret_cast<HWND>(window->winId()),
                                                          &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
    if (!handle)
        return nullptr;
    return std::make_unique<WindowNotifications>(handle);
}
