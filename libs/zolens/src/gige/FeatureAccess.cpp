#include "FeatureAccess.h"

#include <algorithm>
#include <cmath>

namespace zolens {
namespace {

} // namespace

FeatureAccess::FeatureAccess(VisionDevice& visionDevice)
    : device(visionDevice),
      reservation(device.reserve())
{
}

bool FeatureAccess::has(const char* feature)
{
    const auto available = attempt([=](GError** error) {
        return arv_camera_is_feature_available(camera(), feature, error) != FALSE;
    });
    return available.value_or(false);
}

FeatureAccess::Kind FeatureAccess::kindOf(const char* feature) const
{
    ArvGcNode* node = arv_device_get_feature(device.device(), feature);
    if (ARV_IS_GC_FLOAT(node))
        return Kind::Float;
    if (ARV_IS_GC_BOOLEAN(node))
        return Kind::Switch;
    return ARV_IS_GC_INTEGER(node) ? Kind::Whole : Kind::None;
}

std::optional<double> FeatureAccess::number(const char* feature)
{
    switch (kindOf(feature)) {
    case Kind::Float:
        return attempt(
            [=](GError** error) { return arv_camera_get_float(camera(), feature, error); });
    case Kind::Whole:
        return attempt([=](GError** error) {
            return double(arv_camera_get_integer(camera(), feature, error));
        });
    case Kind::Switch:
        return attempt([=](GError** error) {
            return double(arv_camera_get_boolean(camera(), feature, error) != FALSE);
        });
    case Kind::None:
        break;
    }
    return std::nullopt;
}

bool FeatureAccess::setNumber(const char* feature, double value)
{
    const Kind kind = kindOf(feature);
    if (kind == Kind::None)
        return false;
    const auto set = [=](GError** error) {
        if (kind == Kind::Float)
            arv_camera_set_float(camera(), feature, value, error);
        else if (kind == Kind::Whole)
            arv_camera_set_integer(camera(), feature, std::llround(value), error);
        else
            arv_camera_set_boolean(camera(), feature, value != 0.0, error);
        return true;
    };
    return attempt(set).has_value();
}

std::optional<FeatureRange> FeatureAccess::range(const char* feature, double mostUsed)
{
    const Kind kind = has(feature) ? kindOf(feature) : Kind::None;
    if (kind != Kind::Float && kind != Kind::Whole)
        return std::nullopt;
    auto found = kind == Kind::Float ? floatRange(feature) : wholeRange(feature);
    if (!found)
        return std::nullopt;
    found->highest = std::min(found->highest, mostUsed);
    const bool isSensible = found->lowest >= -largestBound && found->highest <= largestBound &&
                            found->lowest <= found->highest;
    return isSensible ? found : std::nullopt;
}

std::optional<FeatureRange> FeatureAccess::floatRange(const char* feature)
{
    auto range = attempt([=](GError** error) {
        FeatureRange bounds;
        arv_camera_get_float_bounds(camera(), feature, &bounds.lowest, &bounds.highest, error);
        return bounds;
    });
    if (!range)
        return std::nullopt;
    const char* unit =
        arv_gc_float_get_unit(ARV_GC_FLOAT(arv_device_get_feature(device.device(), feature)));
    range->unit = unit ? unit : "";
    return range;
}

std::optional<FeatureRange> FeatureAccess::wholeRange(const char* feature)
{
    return attempt([=](GError** error) {
        gint64 lowest = 0;
        gint64 highest = 0;
        arv_camera_get_integer_bounds(camera(), feature, &lowest, &highest, error);
        const gint64 step = *error ? 1 : arv_camera_get_integer_increment(camera(), feature, error);
        return FeatureRange{double(lowest), double(highest), double(step), true, {}};
    });
}

std::optional<std::string> FeatureAccess::choice(const char* feature)
{
    return attempt([=](GError** error) {
        const char* entry = arv_camera_get_string(camera(), feature, error);
        return std::string(entry ? entry : "");
    });
}

bool FeatureAccess::choose(const char* feature, const char* entry)
{
    if (!offers(feature, entry))
        return false;
    const auto set = [=](GError** error) {
        arv_camera_set_string(camera(), feature, entry, error);
        return true;
    };
    return attempt(set).has_value();
}

bool FeatureAccess::offers(const char* feature, const char* entry)
{
    if (!has(feature))
        return false;
    const auto offered = attempt([=](GError** error) {
        return arv_camera_is_enumeration_entry_available(camera(), feature, entry, error) != FALSE;
    });
    return offered.value_or(false);
}

} // namespace zolens
