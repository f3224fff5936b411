#pragma once

#include <QObject>

#include <memory>

class QWidget;

/// The system's word that devices were plugged in or out, for one window while this lives. Each
/// system has a kind of its own behind it. Lives on the GUI thread.
class DeviceNotifications : public QObject
{
    Q_OBJECT

public:
    /// Null when the system refuses. The native window of `window` must outlive the result.
    static std::unique_ptr<DeviceNotifications> registerFor(QWidget* window);

    /// To be called with each message of the window's nativeEvent(), by which some systems tell.
    virtual void hearMessage(void* message) { Q_UNUSED(message) }

signals:
    /// Devices went, at this moment, or came, a second ago, by which time they answer.
    void devicesChanged();
};
