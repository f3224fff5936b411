#pragma once

#include "camera/UdevTestbed.h"
#include "support/fakev4l2/FakeV4l2.h"

#include <string>

/// A USB port of the machine and the camera in it: its device node, what udev tells of it, and the
/// system calls on it.
class UsbPort final
{
public:
    /// Plugs a Webcam in. Its node gets the next number, as in a machine where the one of before
    /// is still open.
    void plug();
    /// Pulls the camera out.
    void unplug();
    /// Does what the word says: "plug" or "unplug".
    void obey(const std::string& word);

    FakeV4l2& system() { return calls; }

private:
    QString node() const;

    UdevTestbed udev;
    FakeV4l2 calls;
    int number = -1;
};
