#pragma once

#include "SimulatedSettings.h"
#include "zolens/CWCamera.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace zolens {

class MicroscopeImager;
class MicroscopeScene;

/// A microscope camera without hardware: looks at a stage micrometer and a specimen, and answers to
/// every property. It makes its frames on a thread of its own, as fast as size, format and exposure
/// time allow. Automatic exposure and white balance take a step with each frame.
class SimulatedCamera final : public CWCamera
{
public:
    /// Without `tryStillCapture` it has no still path, and a still picture is the preview's.
    explicit SimulatedCamera(bool tryStillCapture);
    ~SimulatedCamera() override;

    static _tag_VideoDeviceInfo description();

    bool start(FrameSink* sink) override;
    void stop() override;
    /// Null while stopped.
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
    /// After one balancing the mode is the manual one.
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

protected:
    int selectPreviewSize(int index) override;
    int selectStillSize(int index) override;
    double defaultValue(tagCMProperty id) override;

private:
    void run(FrameSink* sink);
    void makeFrame(FrameSink* sink);
    /// The settings of this frame, after the automatic controls.
    SimulatedSettings nextSettings(const MicroscopeScene& scene);
    bool waitForNextFrame(std::chrono::steady_clock::time_point& due);

    const bool stillPath;
    std::unique_ptr<MicroscopeImager> imager; ///< Of the thread while that runs; null when stopped.
    std::thread thread;

    std::mutex mutex; ///< Guards what follows.
    std::condition_variable changed;
    SimulatedSettings settings;
    QSize sizeOfStills{3840, 2160};
    bool autoExposure = true;
    bool balanceOnce = false;
    int balanceMode = CWWhiteBalance_Manual;
    quint64 frameNumber = 0;
    bool running = false;
};

} // namespace zolens
