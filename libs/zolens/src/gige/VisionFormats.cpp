#include "VisionFormats.h"

#include "device/PictureSizes.h"
#include "pixels/SensorFormat.h"

#include <algorithm>
#include <tuple>

namespace zolens {
namespace {

/// Beyond any sensor.
constexpr int longestSide = 1 << 20;

struct Span
{
    int least = 0;
    int most = 0;
    int step = 1;
};

/// What the feature may be; only what it is where the camera tells no sensible limits.
Span spanOf(FeatureAccess& features, const char* feature)
{
    const auto range = features.range(feature);
    if (range && range->highest >= 0 && range->highest <= longestSide)
        return {int(std::max(0.0, range->lowest)), int(range->highest),
                int(std::clamp(range->step, 1.0, double(longestSide)))};
    const double present = features.number(feature).value_or(0);
    const int only = int(std::clamp(present, 0.0, double(longestSide)));
    return {only, only, 1};
}

/// The largest value of the span that is not above the limit.
int held(const Span& span, int value)
{
    const int above = std::clamp(value, span.least, span.most) - span.least;
    return span.least + above / span.step * span.step;
}

void moveTo(FeatureAccess& features, const char* offset, int place)
{
    if (features.has(offset))
        features.setNumber(offset, place);
}

/// The limits of the size hold for a region in the corner.
void moveToCorner(FeatureAccess& features)
{
    moveTo(features, "OffsetX", 0);
    moveTo(features, "OffsetY", 0);
}

void moveToMiddle(FeatureAccess& features, const QSize& surplus)
{
    const Span x = spanOf(features, "OffsetX");
    const Span y = spanOf(features, "OffsetY");
    moveTo(features, "OffsetX", held(x, surplus.width() / 2));
    moveTo(features, "OffsetY", held(y, surplus.height() / 2));
}

std::vector<QSize> regionSizes(FeatureAccess& features)
{
    moveToCorner(features);
    const Span width = spanOf(features, "Width");
    const Span height = spanOf(features, "Height");
    const QSize full(held(width, width.most), held(height, height.most));
    if (full.isEmpty())
        return {};
    std::vector<QSize> sizes =
        commonSizesOn({QSize(width.least, height.least), full, QSize(width.step, height.step)});
    sizes.push_back(full);
    sortByArea(&sizes);
    return sizes;
}

std::vector<quint32> offeredCodes(FeatureAccess& features)
{
    const auto read = [&](GError** error) {
        guint count = 0;
        const GlibPointer<gint64> codes(
            arv_camera_dup_available_pixel_formats(features.camera(), &count, error));
        return codes ? std::vector<quint32>(codes.get(), codes.get() + count)
                     : std::vector<quint32>();
    };
    return features.attempt(read).value_or(std::vector<quint32>());
}

quint32 codeInUse(FeatureAccess& features)
{
    const auto read = [&](GError** error) {
        return quint32(arv_camera_get_pixel_format(features.camera(), error));
    };
    return features.attempt(read).value_or(0);
}

/// Of Bayer patterns, several may be on offer, of which the one in use fits the sensor.
std::vector<const SensorFormat*> bestFirst(const std::vector<quint32>& codes, quint32 current)
{
    std::vector<const SensorFormat*> formats;
    for (const quint32 code : codes) {
        if (const SensorFormat* format = findSensorFormat(code))
            formats.push_back(format);
    }
    const auto rank = [current](const SensorFormat* format) {
        return std::tuple(format->layout == SensorFormat::Layout::Mono,
                          ARV_PIXEL_FORMAT_BIT_PER_PIXEL(format->code), format->code != current);
    };
    std::stable_sort(formats.begin(), formats.end(),
                     [&rank](const auto* a, const auto* b) { return rank(a) < rank(b); });
    return formats;
}

// What has one value only is often protected, even against that value.

bool setFormat(FeatureAccess& features, quint32 code)
{
    const auto set = [&](GError** error) {
        arv_camera_set_pixel_format(features.camera(), code, error);
        return true;
    };
    return codeInUse(features) == code || features.attempt(set);
}

/// The steps may depend on the format.
bool setLength(FeatureAccess& features, const char* side, int length)
{
    const double possible = held(spanOf(features, side), length);
    return features.number(side) == possible || features.setNumber(side, possible);
}

} // namespace

std::vector<VideoFormat> visionFormats(FeatureAccess& features)
{
    const std::vector<QSize> sizes = regionSizes(features);
    if (sizes.empty())
        return {};
    std::vector<VideoFormat> formats;
    for (const auto* format : bestFirst(offeredCodes(features), codeInUse(features))) {
        const auto hasNumber = [format](const VideoFormat& other) {
            return other.number == format->number;
        };
        if (std::none_of(formats.begin(), formats.end(), hasNumber))
            formats.push_back({format->code, format->number, sizes});
    }
    return formats;
}

bool selectMode(FeatureAccess& features, const VideoFormat& format, const QSize& size)
{
    moveToCorner(features);
    const bool accepted = setFormat(features, format.code) &&
                          setLength(features, "Width", size.width()) &&
                          setLength(features, "Height", size.height());
    if (accepted)
        moveToMiddle(features, format.sizes.back() - size);
    return accepted;
}

} // namespace zolens
