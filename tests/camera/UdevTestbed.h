#pragma once

#include <memory>
#include <string>

/// USB cameras that only this process sees, as if udev served them. The process must have been
/// started with umockdev's library loaded first, as tests with UDEV are. Cameras come and go
/// silently; what udev tells of them is said by tell(). A number is used once.
class UdevTestbed final
{
public:
    UdevTestbed();
    ~UdevTestbed();

    /// A USB device with a node /dev/video<number>, which answers no call.
    void addCamera(int number);
    /// Its node goes.
    void removeCamera(int number);
    /// The paths by which events tell of a camera.
    static std::string usbDevice(int number);
    static std::string usbInterface(int number);
    static std::string videoNode(int number);

    /// Sends the event to those who listen. The camera must have been added once.
    void tell(const std::string& device, const char* action);

private:
    struct Private;

    const std::unique_ptr<Private> d;
};
