#include "UsbBench.h"

#include "Settings.h"

#include <zolens/CWFactory.h>

#include <QtTest>

#include <algorithm>

UsbBench::UsbBench(const QSize& largest) : usb(0, largest.width())
{
    filter.addItem({0x1209, 0x0001, name(), CWDevice_Uvc});
    filter.addItem({0, 0, {}, CWDevice_Uvc});
    filter.addItem({0, 0, {}, CWDevice_OtherCapture});
    filter.addItem({0, 0, {}, CWDevice_Simulated});
    useFilter();
}

void UsbBench::useFilter()
{
    CWFactory::setUVCFilter(&filter);
}

bool UsbBench::plug()
{
    const bool done = (usb.isPlugged() || usb.plug()) && lists(1);
    usb.forget();
    return done;
}

bool UsbBench::unplug()
{
    return usb.unplug() && lists(0);
}

bool UsbBench::lists(std::size_t count) const
{
    return QTest::qWaitFor([this, count] { return listed().size() == count; }, vm::patience);
}

std::vector<_tag_VideoDeviceInfo> UsbBench::listed() const
{
    std::vector<_tag_VideoDeviceInfo> devices = CWFactory::videoDeviceList();
    devices.erase(std::remove_if(devices.begin(), devices.end(),
                                 [](const auto& device) { return device.type != CWDevice_Uvc; }),
                  devices.end());
    return devices;
}

std::unique_ptr<Viewer> UsbBench::openedAtOnce(bool tryStillCapture) const
{
    auto viewer = std::make_unique<Viewer>();
    const auto devices = listed();
    if (devices.size() != 1 || !viewer->open(devices.front(), tryStillCapture))
        return nullptr;
    return viewer;
}

std::unique_ptr<Viewer> UsbBench::opened(bool tryStillCapture) const
{
    std::unique_ptr<Viewer> viewer;
    const auto open = [&] { return (viewer = openedAtOnce(tryStillCapture)) != nullptr; };
    return QTest::qWaitFor(open, vm::patience) ? std::move(viewer) : nullptr;
}
