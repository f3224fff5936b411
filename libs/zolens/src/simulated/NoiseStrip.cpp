#include "NoiseStrip.h"

#include "Hash.h"

#include <algorithm>
#include <cmath>

namespace zolens {

namespace {

constexpr std::uint32_t places = 1U << 16;
constexpr std::uint32_t widestRow = 8192;
constexpr std::size_t channels = 4;
constexpr double baseSpread = 1.5;
constexpr qint8 filler = 127;

/// Nearly normal, with a spread of 1: the sum of four numbers of even distribution.
double normalNoise(std::uint32_t pixel, std::uint32_t channel)
{
    const std::uint32_t a = hashOf(pixel, 2 * channel);
    const std::uint32_t b = hashOf(pixel, 2 * channel + 1);
    const double sum = (a & 0xffffU) + (a >> 16) + (b & 0xffffU) + (b >> 16);
    return (sum / 65535.0 - 2.0) * std::sqrt(3.0);
}

bool isGrey(const SimulatedSettings& settings)
{
    return settings.value(CMProperty_ColorMode) == 1.0 ||
           settings.value(CMProperty_Saturation) == 0.0;
}

} // namespace

double NoiseStrip::spread(const SimulatedSettings& settings)
{
    const double kept = 1.0 - 0.85 * settings.value(CMProperty_Denoise) / 100;
    return baseSpread * std::sqrt(settings.value(CMProperty_Gain) / 100) * kept;
}

void NoiseStrip::prepare(const SimulatedSettings& settings)
{
    const double wanted = spread(settings);
    if (wanted != preparedSpread || isGrey(settings) != grey) {
        preparedSpread = wanted;
        grey = isGrey(settings);
        fill();
    }
}

void NoiseStrip::fill()
{
    bytes.resize((places + widestRow) * channels);
    const auto value = [this](std::uint32_t pixel, std::uint32_t channel) {
        const double noise = normalNoise(pixel, grey ? 0 : channel) * preparedSpread;
        return static_cast<qint8>(std::clamp(std::lround(noise), -127L, 127L));
    };
    for (std::uint32_t pixel = 0; pixel < places + widestRow; ++pixel) {
        for (std::uint32_t channel = 0; channel < 3; ++channel)
            bytes[pixel * channels + channel] = value(pixel, channel);
        bytes[pixel * channels + 3] = filler;
    }
}

const qint8* NoiseStrip::row(quint64 frameNumber, int y) const
{
    const std::uint32_t frame = hashOf(static_cast<std::uint32_t>(frameNumber),
                                       static_cast<std::uint32_t>(frameNumber >> 32));
    const std::uint32_t place = hashOf(frame, static_cast<std::uint32_t>(y)) % places;
    return bytes.data() + place * channels;
}

} // namespace zolens
