#include "ImagePipeline.h"

#include "FormatLoss.h"
#include "LightColor.h"

#include <algorithm>
#include <cmath>

namespace zolens {

namespace {

constexpr double displayGamma = 2.2;
/// Microseconds in which the full light of the lamp just fills a pixel, at a gain of 1.
constexpr double fullWellTime = 14000.0;
constexpr double percent = 0.01;
constexpr double neutralSharpness = 20.0;

enum ColorMode { Monochrome = 1, Negative = 2 };

double balanceGain(double lightStrength, const SimulatedSettings& settings, tagCMProperty gain)
{
    return settings.value(gain) * percent / lightStrength;
}

LightColor balance(const SimulatedSettings& settings)
{
    const LightColor assumed = lightOfTemperature(settings.value(CMProperty_ColorTemperature));
    return {balanceGain(assumed.red, settings, CMProperty_RedGain),
            balanceGain(assumed.green, settings, CMProperty_GreenGain),
            balanceGain(assumed.blue, settings, CMProperty_BlueGain)};
}

/// Tone of one channel, from the scene's value to the camera's; factor is on the light.
PixelLoops::Table toneTable(const SimulatedSettings& settings, double factor)
{
    const double exponent = 1.0 / (displayGamma * settings.value(CMProperty_Gamma) * percent);
    const double contrast = settings.value(CMProperty_Contrast) * percent;
    const double brightness = settings.value(CMProperty_Brightness) * 0.8;
    PixelLoops::Table table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double light = std::pow(static_cast<double>(i) / 255, displayGamma) * factor;
        const double tone = 255 * std::pow(std::min(light, 1.0), exponent);
        const double value = (tone - 128) * contrast + 128 + brightness;
        table[i] = static_cast<uchar>(std::clamp(std::lround(value), 0L, 255L));
    }
    return table;
}

struct Color
{
    double red;
    double green;
    double blue;
};

/// Turns and scales the colour differences, as a camera does that thinks in YCbCr.
Color turned(const Color& color, double hue, double saturation)
{
    const double luminance = 0.299 * color.red + 0.587 * color.green + 0.114 * color.blue;
    const double cb = 0.564 * (color.blue - luminance);
    const double cr = 0.713 * (color.red - luminance);
    const double cosine = saturation * std::cos(hue);
    const double sine = saturation * std::sin(hue);
    const double newCb = cosine * cb - sine * cr;
    const double newCr = sine * cb + cosine * cr;
    return {luminance + newCr / 0.713,
            luminance - (0.299 / 0.713 * newCr + 0.114 / 0.564 * newCb) / 0.587,
            luminance + newCb / 0.564};
}

PixelLoops::Matrix colorMatrix(double hue, double saturation)
{
    const auto fixed = [](double value) { return static_cast<int>(std::lround(value * 1024)); };
    const std::array<Color, 3> columns{turned({1, 0, 0}, hue, saturation),
                                       turned({0, 1, 0}, hue, saturation),
                                       turned({0, 0, 1}, hue, saturation)};
    PixelLoops::Matrix matrix{};
    for (std::size_t c = 0; c < columns.size(); ++c) {
        matrix[0][c] = fixed(columns[c].red);
        matrix[1][c] = fixed(columns[c].green);
        matrix[2][c] = fixed(columns[c].blue);
    }
    return matrix;
}

double effectiveSaturation(const SimulatedSettings& settings)
{
    const bool grey = settings.value(CMProperty_ColorMode) == Monochrome;
    return grey ? 0.0 : settings.value(CMProperty_Saturation) * percent;
}

int detailAmount(const SimulatedSettings& settings)
{
    const double sharpness = (settings.value(CMProperty_Sharpness) - neutralSharpness) / 40;
    const double softness = 0.7 * settings.value(CMProperty_Denoise) * percent;
    return static_cast<int>(std::lround(256 * std::max(sharpness - softness, -1.0)));
}

} // namespace

double exposureFactor(const SimulatedSettings& settings)
{
    return settings.value(CMProperty_ExposureTime) / fullWellTime *
           settings.value(CMProperty_Gain) * percent;
}

ImagePipeline::ImagePipeline(const SimulatedSettings& settings)
    : negative(settings.value(CMProperty_ColorMode) == Negative),
      detail(detailAmount(settings)),
      format(settings.format)
{
    const double exposure = exposureFactor(settings);
    const LightColor lamp = lampLight();
    const LightColor gains = balance(settings);
    tables = {toneTable(settings, exposure * lamp.red * gains.red),
              toneTable(settings, exposure * lamp.green * gains.green),
              toneTable(settings, exposure * lamp.blue * gains.blue)};
    const double hue = settings.value(CMProperty_Hue) * M_PI / 180;
    const double saturation = effectiveSaturation(settings);
    changesColor = hue != 0.0 || saturation != 1.0;
    matrix = colorMatrix(hue, saturation);
}

void ImagePipeline::develop(QImage& image) const
{
    PixelLoops::apply(tables, image);
    if (changesColor)
        PixelLoops::apply(matrix, image);
    if (detail != 0)
        PixelLoops::adjustDetail(image, detail);
    if (format == FrameFormat::Yuv) {
        subsampleChroma(image, 2, 1);
    } else if (format == FrameFormat::Mjpeg) {
        subsampleChroma(image, 2, 2);
        quantiseBlocks(image);
    }
    if (negative)
        PixelLoops::invert(image);
}

} // namespace zolens
