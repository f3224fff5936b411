#include "VisionControls.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zolens {
namespace {

constexpr char exposureAuto[] = "ExposureAuto";
constexpr char gainAuto[] = "GainAuto";
constexpr char balanceAuto[] = "BalanceWhiteAuto";
constexpr char off[] = "Off";
constexpr char continuous[] = "Continuous";
constexpr char once[] = "Once";

/// The list by which the camera chooses the property's value itself; null when there is none.
const char* automaticOf(tagCMProperty id)
{
    switch (id) {
    case CMProperty_ExposureTime:
        return exposureAuto;
    case CMProperty_Gain:
        return gainAuto;
    case CMProperty_RedGain:
    case CMProperty_GreenGain:
    case CMProperty_BlueGain:
        return balanceAuto;
    default:
        return nullptr;
    }
}

bool isAutomatic(FeatureAccess& features, const char* list)
{
    return list && features.has(list) && features.choice(list).value_or(off) != off;
}

void chooseAutoExposure(FeatureAccess& features, bool on)
{
    for (const char* list : {exposureAuto, gainAuto}) {
        if (!features.choose(list, on ? continuous : off) && on)
            features.choose(list, once);
    }
}

void chooseBalance(FeatureAccess& features, int mode)
{
    const char* entry = mode == CWWhiteBalance_Auto ? continuous : off;
    features.choose(balanceAuto, mode == CWWhiteBalance_OnePush ? once : entry);
}

bool contains(const std::vector<int>& values, int value)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

std::vector<int> offeredBalances(FeatureAccess& features, bool hasRatios)
{
    std::vector<int> modes;
    if (features.offers(balanceAuto, continuous))
        modes.push_back(CWWhiteBalance_Auto);
    if (features.offers(balanceAuto, off) || hasRatios)
        modes.push_back(CWWhiteBalance_Manual);
    if (features.offers(balanceAuto, once))
        modes.push_back(CWWhiteBalance_OnePush);
    return modes;
}

const FeatureMapping* find(const std::vector<FeatureMapping>& mappings, tagCMProperty id)
{
    const auto found =
        std::find_if(mappings.begin(), mappings.end(),
                     [id](const FeatureMapping& mapping) { return mapping.property == id; });
    return found == mappings.end() ? nullptr : &*found;
}

} // namespace

void VisionControls::attach(const std::shared_ptr<VisionDevice>& visionDevice)
{
    FeatureAccess features(*visionDevice);
    std::vector<FeatureMapping> found = findMappings(features);
    std::vector<int> balances = offeredBalances(features, find(found, CMProperty_RedGain));
    for (const FeatureMapping& mapping : found)
        noteAnswer(mapping, mapping.range.standard);
    Wishes before;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        mappings = withFirstStandards(std::move(found));
        balanceModes = std::move(balances);
        before = wishes;
        device = visionDevice;
    }
    fulfil(before, features);
    noteBalance(features);
}

void VisionControls::detach()
{
    const std::lock_guard<std::mutex> lock(mutex);
    device.reset();
}

/// What a camera that was away comes back with is none of its defaults.
std::vector<FeatureMapping>
VisionControls::withFirstStandards(std::vector<FeatureMapping> found) const
{
    for (FeatureMapping& mapping : found) {
        if (const FeatureMapping* before = find(mappings, mapping.property))
            mapping.range.standard = before->range.standard;
    }
    return found;
}

void VisionControls::fulfil(const Wishes& all, FeatureAccess& features)
{
    if (all.autoExposure)
        chooseAutoExposure(features, *all.autoExposure);
    if (all.whiteBalance)
        chooseBalance(features, *all.whiteBalance);
    for (const auto& [id, value] : all.values)
        write(features, id, value);
}

std::shared_ptr<VisionDevice> VisionControls::present() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return device;
}

std::optional<FeatureMapping> VisionControls::mapping(tagCMProperty id) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    const FeatureMapping* found = find(mappings, id);
    return found ? std::optional(*found) : std::nullopt;
}

std::optional<DeviceControls::Range> VisionControls::range(tagCMProperty id) const
{
    const auto found = mapping(id);
    return found ? std::optional(found->range) : std::nullopt;
}

std::vector<int> VisionControls::whiteBalanceModes() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return balanceModes;
}

std::optional<double> VisionControls::read(tagCMProperty id)
{
    const auto found = mapping(id);
    const auto camera = present();
    if (!found || !camera)
        return std::nullopt;
    FeatureAccess features(*camera);
    const auto value = found->read(features);
    if (value)
        noteAnswer(*found, *value);
    return value;
}

bool VisionControls::write(tagCMProperty id, double value)
{
    if (!mapping(id) || std::isnan(value))
        return false;
    const auto camera = present();
    bool written = false;
    if (camera) {
        FeatureAccess features(*camera);
        written = write(features, id, value);
    }
    if (written || !camera || camera->isLost())
        note(id, value);
    return written;
}

void VisionControls::note(tagCMProperty id, double value)
{
    const std::lock_guard<std::mutex> lock(mutex);
    wishes.values[id] = value;
    if (automaticOf(id) == balanceAuto)
        wishes.whiteBalance = CWWhiteBalance_Manual;
}

bool VisionControls::write(FeatureAccess& features, tagCMProperty id, double value)
{
    const auto found = mapping(id);
    if (!found || isAutomatic(features, automaticOf(id)) || !found->write(features, value))
        return false;
    if (const auto now = found->read(features))
        noteAnswer(*found, *now);
    return true;
}

void VisionControls::setAutoExposure(bool on)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        wishes.autoExposure = on;
    }
    if (const auto camera = present()) {
        FeatureAccess features(*camera);
        chooseAutoExposure(features, on);
    }
}

void VisionControls::setWhiteBalanceMode(int mode)
{
    if (!contains(whiteBalanceModes(), mode))
        return;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        wishes.whiteBalance = mode;
        for (const auto id : {CMProperty_RedGain, CMProperty_GreenGain, CMProperty_BlueGain})
            wishes.values.erase(id);
    }
    if (const auto camera = present()) {
        FeatureAccess features(*camera);
        chooseBalance(features, mode);
    }
}

int VisionControls::whiteBalanceMode()
{
    const auto camera = present();
    if (!camera)
        return CWWhiteBalance_Manual;
    FeatureAccess features(*camera);
    noteBalance(features);
    return answers.whiteBalanceMode();
}

void VisionControls::noteBalance(FeatureAccess& features)
{
    answers.noteWhiteBalanceMode(
        features.choice(balanceAuto) == continuous ? CWWhiteBalance_Auto : CWWhiteBalance_Manual);
}

std::chrono::microseconds VisionControls::exposureTime() const
{
    return std::chrono::microseconds(exposureMicroseconds);
}

/// Pictures are waited for so much longer: not for longer than the camera can expose.
void VisionControls::noteAnswer(const FeatureMapping& about, double value)
{
    answers.noteValue(about.property, value);
    const DeviceControls::Range& range = about.range;
    if (about.property == CMProperty_ExposureTime)
        exposureMicroseconds = std::llround(std::clamp(value, range.lowest, range.highest));
}

} // namespace zolens
