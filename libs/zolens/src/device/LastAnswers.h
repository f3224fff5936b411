#pragma once

#include "zolens/CameraTypes.h"

#include <map>
#include <mutex>
#include <optional>

namespace zolens {

/// What a device answered last about each of its settings, for those who do not wait for it.
/// Thread-safe.
class LastAnswers final
{
public:
    void noteValue(tagCMProperty id, double value);
    void noteWhiteBalanceMode(int mode);
    void notePowerFrequency(int frequency);

    /// Nothing while there was no answer yet.
    std::optional<double> value(tagCMProperty id) const;
    int whiteBalanceMode() const;
    int powerFrequency() const;

private:
    mutable std::mutex mutex;
    std::map<tagCMProperty, double> values;
    int balance = CWWhiteBalance_Manual;
    int mains = 0;
};

} // namespace zolens
