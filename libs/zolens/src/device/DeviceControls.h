#pragma once

#include "LastAnswers.h"
#include "zolens/CameraTypes.h"

#include <chrono>
#include <optional>
#include <vector>

namespace zolens {

/// The properties that an open device has itself. Reading and writing wait for the device, and one
/// thread does it at a time; what is supported, and what was answered last, may be asked on any
/// thread.
class DeviceControls
{
public:
    struct Range
    {
        double lowest;
        double highest;
        double step;
        double standard;
        bool hasUnit = true; ///< The one that tagCMProperty states, if it states one.
    };

    virtual ~DeviceControls() = default;

    /// Nothing for a property that the device lacks.
    virtual std::optional<Range> range(tagCMProperty id) const = 0;
    virtual std::vector<int> whiteBalanceModes() const = 0;
    virtual std::vector<int> powerFrequencies() const = 0;

    virtual std::optional<double> read(tagCMProperty id) = 0;
    /// False when the device does not take a value now, as an exposure time while it chooses that
    /// by itself.
    virtual bool write(tagCMProperty id, double value) = 0;
    virtual void setAutoExposure(bool on) = 0;
    virtual void setWhiteBalanceMode(int mode) = 0;
    virtual int whiteBalanceMode() = 0;
    virtual int powerFrequency() = 0;
    virtual void setPowerFrequency(int value) = 0;

    /// The one in force when the controls were read last, as far as it can be believed. Safe on any
    /// thread.
    virtual std::chrono::microseconds exposureTime() const = 0;

    const LastAnswers& lastAnswers() const { return answers; }

protected:
    LastAnswers answers; ///< Kept by those who read.
};

} // namespace zolens
