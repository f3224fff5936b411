#pragma once

#include "ControlSet.h"
#include "zolens/CameraTypes.h"

#include <atomic>
#include <chrono>

namespace zolens {

/// The properties of a camera as the controls of its device. Reading and writing wait for the
/// device, and one thread does it at a time; what is supported may be asked on any thread.
class CameraControls final
{
public:
    struct Range
    {
        double lowest;
        double highest;
        double step;
        double standard;
    };

    explicit CameraControls(std::shared_ptr<const V4l2Device> device);

    /// Nothing for a property that the device lacks.
    std::optional<Range> range(tagCMProperty id) const;
    std::vector<int> whiteBalanceModes() const;
    std::vector<int> powerFrequencies() const;

    std::optional<double> read(tagCMProperty id);
    /// False when the device does not take a value now, as an exposure time while it chooses that
    /// by itself.
    bool write(tagCMProperty id, double value);
    void setAutoExposure(bool on);
    void setWhiteBalanceMode(int mode);
    int whiteBalanceMode();
    int powerFrequency();
    void setPowerFrequency(int value);

    /// The one in force when the controls were read last. Safe on any thread.
    std::chrono::microseconds exposureTime() const;

private:
    struct Mapping
    {
        quint32 control;
        double scale; ///< Units of the property in one of the control.
    };

    std::optional<Mapping> mapping(tagCMProperty id) const;
    bool set(quint32 id, qint64 value);
    void noteExposureTime();

    ControlSet controls;
    std::atomic<qint64> exposureMicroseconds{0};
};

} // namespace zolens
