#pragma once

#include "ControlSet.h"
#include "device/DeviceControls.h"

#include <atomic>

namespace zolens {

/// The properties of a camera as the controls of its device.
class CameraControls final : public DeviceControls
{
public:
    explicit CameraControls(std::shared_ptr<const V4l2Device> device);

    std::optional<Range> range(tagCMProperty id) const override;
    std::vector<int> whiteBalanceModes() const override;
    std::vector<int> powerFrequencies() const override;

    std::optional<double> read(tagCMProperty id) override;
    bool write(tagCMProperty id, double value) override;
    void setAutoExposure(bool on) override;
    void setWhiteBalanceMode(int mode) override;
    int whiteBalanceMode() override;
    int powerFrequency() override;
    void setPowerFrequency(int value) override;
    std::chrono::microseconds exposureTime() const override;

private:
    struct Mapping
    {
        quint32 control;
        double scale; ///< Units of the property in one of the control.
    };

    std::optional<Mapping> mapping(tagCMProperty id) const;
    bool isExposureAutomatic();
    bool set(quint32 id, qint64 value);
    void noteAll();
    void noteSwitches();
    void noteExposureTime();

    ControlSet controls;
    std::atomic<qint64> exposureMicroseconds{0};
};

} // namespace zolens
