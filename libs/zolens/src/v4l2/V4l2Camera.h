#pragma once

#include "V4l2Session.h"
#include "zolens/CWCamera.h"

#include <functional>
#include <memory>
#include <optional>

namespace zolens {

class TaskThread;
class V4l2Worker;

/// A camera on the USB, or another capture device of the machine. What the device lacks the library
/// does: turning, colour modes and de-noise. Changes of size and format happen while it runs; what
/// the device refuses goes back to what it had.
class V4l2Camera final : public CWCamera
{
public:
    /// With `tryStillCapture`, and a device with several sizes, a still picture is taken in the
    /// still size by a short switch to it.
    V4l2Camera(V4l2Address deviceAddress, bool tryStillCapture);
    ~V4l2Camera() override;

    bool start(FrameSink* sink) override;
    void stop() override;
    QImage captureStill() override;
    _tag_VideoDeviceInfo deviceInfo() const override;

    void previewSizes(std::vector<QSize>* sizes) override;
    void previewSize(QSize* size) override;
    void previewFormats(std::vector<int>* formats) override;
    int previewFormat() override;
    int setPreviewFormat(int index) override;
    bool hasStillCapture() override;
    void stillSizes(std::vector<QSize>* sizes) override;
    void stillSize(QSize* size) override;
    void setFlip(bool on) override;
    bool flip() override;
    void setMirror(bool on) override;
    bool mirror() override;

    void setAutoExposure(bool on) override;
    void whiteBalanceModes(std::vector<int>* modes) override;
    void setWhiteBalanceMode(int mode) override;
    int whiteBalanceMode() override;
    bool isPropertySupported(tagCMProperty id) override;
    void propertyRange(tagCMProperty id, double* min, double* max, double* step) override;
    void propertyValues(std::vector<int>* values, tagCMProperty id) override;
    int getProperty(tagCMProperty id, double* value) override;
    int setProperty(tagCMProperty id, double value) override;
    void powerFrequencies(std::vector<int>* values) override;
    int powerFrequency() override;
    void setPowerFrequency(int value) override;

    /// Frames that could not be decoded, and restarts of a stalled device, since the start.
    quint64 damagedFrames() const;
    quint64 restarts() const;

protected:
    int selectPreviewSize(int index) override;
    int selectStillSize(int index) override;
    double defaultValue(tagCMProperty id) override;

private:
    /// Asks the device; nothing when it is gone or takes too long.
    template <typename T>
    std::optional<T> ask(std::function<T(CameraControls&)> question);
    int follow(bool accepted);

    const V4l2Address address;
    const bool stillPath;
    std::shared_ptr<V4l2Session> session; ///< Never null; a new one with each start.
    /// Both null while stopped.
    std::unique_ptr<V4l2Worker> worker;
    std::unique_ptr<TaskThread> tasks;
};

} // namespace zolens
