#include "UsbPort.h"

#include "Webcam.h"

void UsbPort::plug()
{
    ++number;
    calls.plug(node(), makeWebcam());
    udev.addCamera(number);
    udev.tell(UdevTestbed::usbDevice(number), "add");
    udev.tell(UdevTestbed::videoNode(number), "add");
}

void UsbPort::unplug()
{
    udev.removeCamera(number);
    calls.unplug(node());
    udev.tell(UdevTestbed::videoNode(number), "remove");
    udev.tell(UdevTestbed::usbDevice(number), "remove");
}

void UsbPort::obey(const std::string& word)
{
    if (word == "plug")
        plug();
    else if (word == "unplug")
        unplug();
}

QString UsbPort::node() const
{
    return QStringLiteral("/dev/video%1").arg(number);
}
