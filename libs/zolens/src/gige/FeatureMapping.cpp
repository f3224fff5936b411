#include "FeatureMapping.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

namespace zolens {
namespace {

using Scale = FeatureMapping::Scale;

constexpr double hundredths = 100.0;
constexpr double decibelsPerDecade = 20.0;
/// Numbers with fractions that span less count in hundredths, so that there are steps in between.
constexpr double narrowSpan = 100.0;
constexpr double brightest = 255.0;
constexpr double percent = 100.0;

/// Properties are shown and chosen as integers in places.
bool isSensible(double value)
{
    return std::abs(value) <= FeatureAccess::largestBound;
}

enum class Meaning { Time, RawTime, Gain, Number, Fraction, Percent };

struct Row
{
    tagCMProperty property;
    const char* feature;
    Meaning meaning;
    const char* selector = nullptr;
    const char* entry = nullptr;
};

constexpr char ratioSelector[] = "BalanceRatioSelector";

// Of several features for a property, the first that the camera has counts.
constexpr Row rows[] = {
    {CMProperty_ExposureTime, "ExposureTime", Meaning::Time},
    {CMProperty_ExposureTime, "ExposureTimeAbs", Meaning::Time},
    {CMProperty_ExposureTime, "ExposureTimeRaw", Meaning::RawTime},
    {CMProperty_Gain, "Gain", Meaning::Gain},
    {CMProperty_Gain, "GainAbs", Meaning::Gain},
    {CMProperty_Gain, "GainRaw", Meaning::Gain},
    {CMProperty_ExposureTarget, "AutoTargetBrightness", Meaning::Fraction},
    {CMProperty_ExposureTarget, "AutoTargetValue", Meaning::Number},
    {CMProperty_ExposureTarget, "ExposureAutoTarget", Meaning::Percent},
    {CMProperty_ExposureTarget, "AutoExposureTargetGreyValue", Meaning::Percent},
    {CMProperty_RedGain, "BalanceRatio", Meaning::Number, ratioSelector, "Red"},
    {CMProperty_GreenGain, "BalanceRatio", Meaning::Number, ratioSelector, "Green"},
    {CMProperty_BlueGain, "BalanceRatio", Meaning::Number, ratioSelector, "Blue"},
    {CMProperty_RedGain, "BalanceRatioAbs", Meaning::Number, ratioSelector, "Red"},
    {CMProperty_GreenGain, "BalanceRatioAbs", Meaning::Number, ratioSelector, "Green"},
    {CMProperty_BlueGain, "BalanceRatioAbs", Meaning::Number, ratioSelector, "Blue"},
    {CMProperty_RedGain, "BalanceRatioRaw", Meaning::Number, ratioSelector, "Red"},
    {CMProperty_GreenGain, "BalanceRatioRaw", Meaning::Number, ratioSelector, "Green"},
    {CMProperty_BlueGain, "BalanceRatioRaw", Meaning::Number, ratioSelector, "Blue"},
    {CMProperty_Brightness, "BlackLevel", Meaning::Number},
    {CMProperty_Brightness, "BlackLevelAbs", Meaning::Number},
    {CMProperty_Brightness, "BlackLevelRaw", Meaning::Number},
    {CMProperty_Contrast, "Contrast", Meaning::Number},
    {CMProperty_Hue, "Hue", Meaning::Number},
    {CMProperty_Saturation, "Saturation", Meaning::Number},
    {CMProperty_Gamma, "Gamma", Meaning::Number},
    {CMProperty_Sharpness, "Sharpness", Meaning::Number},
    {CMProperty_Sharpness, "Sharpening", Meaning::Number},
};

/// There are cameras that could expose for hours.
bool isTime(Meaning meaning)
{
    return meaning == Meaning::Time || meaning == Meaning::RawTime;
}

/// Gains come in decibels, which begin at or below 0, or as factors, which begin above.
Scale scaleOfGain(const FeatureRange& range)
{
    return range.unit == "dB" || range.lowest <= 0.0 ? Scale{true, 1.0} : Scale{false, hundredths};
}

/// Gain and time of old cameras are numbers of steps whose meaning they do not tell.
bool isUnknownUnit(Meaning meaning, const FeatureRange& range)
{
    return meaning == Meaning::RawTime || (meaning == Meaning::Gain && range.isWhole);
}

Scale scaleOf(Meaning meaning, const FeatureRange& range)
{
    switch (meaning) {
    case Meaning::Gain:
        return range.isWhole ? Scale() : scaleOfGain(range);
    case Meaning::Fraction:
        return {false, brightest};
    case Meaning::Percent:
        return {false, brightest / percent};
    case Meaning::Number:
        if (!range.isWhole && range.highest - range.lowest < narrowSpan)
            return {false, hundredths};
        break;
    case Meaning::Time:
    case Meaning::RawTime:
        break;
    }
    return {};
}

/// The number on the grid of the feature.
double nearest(const FeatureRange& limits, double number)
{
    const double held = std::clamp(number, limits.lowest, limits.highest);
    if (limits.step <= 0.0)
        return held;
    const double steps = std::round((held - limits.lowest) / limits.step);
    const double onGrid = limits.lowest + steps * limits.step;
    return onGrid > limits.highest ? onGrid - limits.step : onGrid;
}

std::optional<FeatureMapping> mappingOf(FeatureAccess& features, const Row& row)
{
    if (row.selector && !features.choose(row.selector, row.entry))
        return std::nullopt;
    const auto range = isTime(row.meaning)
                           ? features.range(row.feature, FeatureAccess::largestBound)
                           : features.range(row.feature);
    if (!range)
        return std::nullopt;
    FeatureMapping mapping = {row.property,
                              row.feature,
                              row.selector,
                              row.entry,
                              *range,
                              scaleOf(row.meaning, *range),
                              {}};
    const Scale& scale = mapping.scale;
    mapping.range.lowest = scale.toProperty(range->lowest);
    mapping.range.highest = scale.toProperty(range->highest);
    if (!isSensible(mapping.range.lowest) || !isSensible(mapping.range.highest))
        return std::nullopt;
    mapping.range.step = range->isWhole ? range->step * scale.factor : 1.0;
    mapping.range.hasUnit = !isUnknownUnit(row.meaning, *range);
    const auto value = mapping.read(features);
    if (!value)
        return std::nullopt;
    mapping.range.standard = std::clamp(*value, mapping.range.lowest, mapping.range.highest);
    return mapping;
}

/// Cameras may not heed a number, or not take it, beside a switch, a fixed curve or an automatic of
/// the same name.
void makeEffective(FeatureAccess& features, const std::string& feature)
{
    for (const char* ending : {"Enable", "Enabled"}) {
        const std::string enabling = feature + ending;
        if (features.has(enabling.c_str()))
            features.setNumber(enabling.c_str(), 1.0);
    }
    features.choose((feature + "Selector").c_str(), "User");
    features.choose((feature + "Auto").c_str(), "Off");
}

/// Of several amplifiers in a row, the one that stands for all.
void selectWholeSignal(FeatureAccess& features)
{
    for (const char* selector : {"GainSelector", "BlackLevelSelector"}) {
        for (const char* entry : {"All", "AnalogAll", "DigitalAll"}) {
            if (features.choose(selector, entry))
                break;
        }
    }
}

} // namespace

double FeatureMapping::Scale::toProperty(double number) const
{
    return decibel ? hundredths * std::pow(10.0, number / decibelsPerDecade) : number * factor;
}

double FeatureMapping::Scale::toFeature(double value) const
{
    return decibel ? decibelsPerDecade * std::log10(value / hundredths) : value / factor;
}

bool FeatureMapping::select(FeatureAccess& features) const
{
    return !selector || features.choose(selector, entry);
}

std::optional<double> FeatureMapping::read(FeatureAccess& features) const
{
    const auto number = select(features) ? features.number(feature) : std::nullopt;
    const auto value = number ? std::optional(scale.toProperty(*number)) : std::nullopt;
    return value && isSensible(*value) ? value : std::nullopt;
}

bool FeatureMapping::write(FeatureAccess& features, double value) const
{
    makeEffective(features, feature);
    const double held = std::clamp(value, range.lowest, range.highest);
    return select(features) && features.setNumber(feature, nearest(limits, scale.toFeature(held)));
}

std::vector<FeatureMapping> findMappings(FeatureAccess& features)
{
    selectWholeSignal(features);
    std::vector<FeatureMapping> found;
    for (const Row& row : rows) {
        const auto isFound = [&row](const FeatureMapping& mapping) {
            return mapping.property == row.property;
        };
        if (std::any_of(found.begin(), found.end(), isFound))
            continue;
        if (const auto mapping = mappingOf(features, row))
            found.push_back(*mapping);
    }
    return found;
}

} // namespace zolens
