#pragma once

#include <QProcess>
#include <QStringList>

/// A camera in software on the virtual USB of the kernel, as usb_camera.py describes it, which is a
/// process of its own.
class UsbCamera final
{
public:
    /// `number` tells several of them apart; no picture is wider than `widest`. It is plugged in
    /// when the constructor returns, if isPlugged().
    explicit UsbCamera(int number = 0, int widest = 1920);
    ~UsbCamera();

    bool isPlugged() const { return plugged; }
    bool plug();
    bool unplug();
    /// Another command. False when the camera does not answer.
    bool obey(const QString& command);

    /// What has reached the camera since forget(), line by line.
    QStringList heard() const { return lines; }
    /// Only what begins so, without that beginning.
    QStringList heard(const QString& beginning) const;
    void forget();
    /// Waits until that has been heard since forget().
    bool hears(const QString& line) const;

private:
    void listen();
    bool command(const QString& text, const QString& answer);

    QProcess process;
    QStringList lines;
    bool plugged = false;
};
