#pragma once

#include "CaptureWorker.h"
#include "zolens/CWCamera.h"

#include <memory>

namespace zolens {

class PatientControls;

/// A camera whose worker thread brings frames in a mode of its choice. What the device lacks the
/// library does: turning, colour modes and de-noise. Changes of size and format happen while it
/// runs; what the device refuses goes back to what it had.
class CaptureCamera : public CWCamera
{
public:
    /// With `tryStillCapture`, and a device with several sizes, a still picture is taken in the
    /// still size by a short switch to it.
    explicit CaptureCamera(bool tryStillCapture);
    ~CaptureCamera() override;

    bool start(FrameSink* sink) override;
    void stop() override;
    QImage captureStill() override;
    _tag_VideoDeviceInfo deviceInfo() const override;
    bool isGone() const override;
    bool hasUnit(tagCMProperty id) override;

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
    /// What the device's thread does from a start to the stop.
    virtual CaptureWork prepare(FrameSink* sink) const = 0;

    int selectPreviewSize(int index) override;
    int selectStillSize(int index) override;
    double defaultValue(tagCMProperty id) override;

private:
    int follow(bool accepted);

    std::shared_ptr<CaptureSession> session; ///< Never null; a new one with each start.
    /// Both null while stopped.
    std::unique_ptr<CaptureWorker> worker;
    std::unique_ptr<PatientControls> controls;
};

} // namespace zolens
