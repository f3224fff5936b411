#pragma once

#include "FeatureMapping.h"
#include "device/DeviceControls.h"

#include <QtGlobal>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>

namespace zolens {

class VisionDevice;

/// The properties of a camera as its features. Outlives a loss of the camera: what was set, also
/// meanwhile, is set again when it is back.
class VisionControls final : public DeviceControls
{
public:
    /// Finds what the camera has, and gives it the settings of before.
    void attach(const std::shared_ptr<VisionDevice>& visionDevice);
    /// The camera is lost; nothing waits for it any more.
    void detach();

    std::optional<Range> range(tagCMProperty id) const override;
    std::vector<int> whiteBalanceModes() const override;
    std::vector<int> powerFrequencies() const override { return {}; }

    /// Nothing while the camera is lost.
    std::optional<double> read(tagCMProperty id) override;
    bool write(tagCMProperty id, double value) override;
    void setAutoExposure(bool on) override;
    void setWhiteBalanceMode(int mode) override;
    int whiteBalanceMode() override;
    int powerFrequency() override { return 0; }
    void setPowerFrequency(int) override {}
    std::chrono::microseconds exposureTime() const override;

private:
    /// What the user has set.
    struct Wishes
    {
        std::optional<bool> autoExposure;
        std::optional<int> whiteBalance;
        std::map<tagCMProperty, double> values;
    };

    std::shared_ptr<VisionDevice> present() const;
    std::optional<FeatureMapping> mapping(tagCMProperty id) const;
    std::vector<FeatureMapping> withFirstStandards(std::vector<FeatureMapping> found) const;
    bool write(FeatureAccess& features, tagCMProperty id, double value);
    void note(tagCMProperty id, double value);
    void fulfil(const Wishes& all, FeatureAccess& features);
    void noteAnswer(const FeatureMapping& about, double value);
    void noteBalance(FeatureAccess& features);

    mutable std::mutex mutex; ///< Never held while the camera is asked.
    std::shared_ptr<VisionDevice> device;
    std::vector<FeatureMapping> mappings;
    std::vector<int> balanceModes;
    Wishes wishes;
    std::atomic<qint64> exposureMicroseconds{0};
};

} // namespace zolens
