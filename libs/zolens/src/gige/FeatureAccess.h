#pragma once

#include "VisionDevice.h"

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace zolens {

/// What the number of a feature may be.
struct FeatureRange
{
    double lowest = 0.0;
    double highest = 0.0;
    double step = 0.0; ///< 0 for features that are no whole numbers.
    bool isWhole = false;
    std::string unit;
};

/// Reads and writes the features of a camera by their names; other threads wait as long as it
/// exists. A camera that does not answer is given up, and from then on every call fails at once.
class FeatureAccess final
{
public:
    explicit FeatureAccess(VisionDevice& visionDevice);

    ArvCamera* camera() const { return device.camera(); }

    /// Calls a function of Aravis that takes a GError** last; nothing when it fails.
    template <typename Call>
    auto attempt(Call call) -> std::optional<decltype(call(nullptr))>
    {
        if (device.isLost())
            return std::nullopt;
        AravisError error;
        auto result = call(error.out());
        if (!error)
            return result;
        device.note(error);
        return std::nullopt;
    }

    /// Whether the camera has the feature, and has it at this moment.
    bool has(const char* feature);

    /// Of features that are numbers or switches.
    std::optional<double> number(const char* feature);
    bool setNumber(const char* feature, double value);
    /// Nothing for features without sensible bounds too. What is beyond `mostUsed` is left out.
    std::optional<FeatureRange> range(const char* feature, double mostUsed = unlimited);

    /// Bounds beyond it are none: a description that lacks them gives the largest numbers there
    /// are.
    static constexpr double largestBound = std::numeric_limits<int>::max();

    /// Of features that are lists.
    std::optional<std::string> choice(const char* feature);
    bool choose(const char* feature, const char* entry);
    bool offers(const char* feature, const char* entry);

private:
    static constexpr double unlimited = std::numeric_limits<double>::infinity();

    enum class Kind { None, Float, Whole, Switch };

    Kind kindOf(const char* feature) const;
    std::optional<FeatureRange> floatRange(const char* feature);
    std::optional<FeatureRange> wholeRange(const char* feature);

    VisionDevice& device;
    const std::unique_lock<std::mutex> reservation;
};

} // namespace zolens
