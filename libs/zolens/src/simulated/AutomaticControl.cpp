#include "AutomaticControl.h"

#include "ImagePipeline.h"
#include "LightColor.h"
#include "PropertyTable.h"

#include <QImage>

#include <algorithm>
#include <cmath>

namespace zolens {

namespace {

constexpr double closeEnough = 0.7; ///< In values of the picture.
constexpr double damping = 0.5;
constexpr double longestTime = 40000.0; ///< Microseconds; beyond, automatic exposure takes gain.
constexpr double brightest = 0.95; ///< Of the best pixel: above it is nothing but bright field.

const tagCMProperty lookProperties[] = {
    CMProperty_Brightness, CMProperty_Contrast,  CMProperty_Hue,     CMProperty_Saturation,
    CMProperty_Gamma,      CMProperty_Sharpness, CMProperty_Denoise, CMProperty_ColorMode};

const tagCMProperty channelGains[] = {CMProperty_RedGain, CMProperty_GreenGain,
                                      CMProperty_BlueGain};

void assign(SimulatedSettings& settings, tagCMProperty id, double value)
{
    settings.setValue(id, nearestValue(*findProperty(id), value));
}

/// Microseconds of one flicker of the light, 0 when it is not to be taken into account.
double flickerPeriod(PowerFrequency frequency)
{
    switch (frequency) {
    case PowerFrequency::Disabled:
        return 0.0;
    case PowerFrequency::Hz60:
        return 1e6 / 120;
    case PowerFrequency::Hz50:
    case PowerFrequency::Auto:
        break;
    }
    return 1e6 / 100;
}

/// Splits time times gain, in microseconds, over both.
void setExposure(SimulatedSettings& settings, double amount)
{
    const double period = flickerPeriod(settings.powerFrequency);
    double time = std::min(amount, longestTime);
    if (period > 0 && time >= period)
        time = std::floor(time / period) * period;
    assign(settings, CMProperty_ExposureTime, time);
    assign(settings, CMProperty_Gain, 100 * amount / settings.value(CMProperty_ExposureTime));
}

double stepTowards(double from, double to)
{
    const double step = (to - from) * damping;
    return from + (std::abs(step) < 1 ? to - from : step);
}

} // namespace

double meteredLuminance(const SimulatedSettings& settings, const QImage& meter)
{
    SimulatedSettings plain = settings;
    plain.format = FrameFormat::Rgb;
    for (const tagCMProperty id : lookProperties)
        plain.setValue(id, findProperty(id)->standard);
    QImage developed = meter;
    ImagePipeline(plain).develop(developed);
    return PixelLoops::meanLuminance(developed);
}

void adjustExposure(SimulatedSettings& settings, const QImage& meter)
{
    const double target = settings.value(CMProperty_ExposureTarget);
    const double mean = meteredLuminance(settings, meter);
    if (std::abs(target - mean) <= closeEnough)
        return;
    constexpr double gamma = 2.2;
    const double ratio = std::clamp(std::pow(target / std::max(mean, 1.0), gamma), 0.05, 20.0);
    const double amount =
        settings.value(CMProperty_ExposureTime) * settings.value(CMProperty_Gain) / 100;
    setExposure(settings, amount * std::pow(ratio, damping));
}

double neutralTemperature(const QImage& meter)
{
    const LightColor lamp = lampLight();
    LightColor sum{0, 0, 0};
    int most = 0;
    for (int y = 0; y < meter.height(); ++y) {
        for (int x = 0; x < meter.width(); ++x)
            most = std::max(most, qGray(meter.pixel(x, y)));
    }
    for (int y = 0; y < meter.height(); ++y) {
        for (int x = 0; x < meter.width(); ++x) {
            const QRgb pixel = meter.pixel(x, y);
            if (qGray(pixel) > most * brightest) {
                sum.red += lamp.red * std::pow(qRed(pixel) / 255.0, 2.2);
                sum.blue += lamp.blue * std::pow(qBlue(pixel) / 255.0, 2.2);
            }
        }
    }
    return temperatureOfLight(sum);
}

void approachWhiteBalance(SimulatedSettings& settings, const QImage& meter)
{
    assign(settings, CMProperty_ColorTemperature,
           stepTowards(settings.value(CMProperty_ColorTemperature), neutralTemperature(meter)));
    for (const tagCMProperty gain : channelGains)
        assign(settings, gain, stepTowards(settings.value(gain), findProperty(gain)->standard));
}

void balanceWhite(SimulatedSettings& settings, const QImage& meter)
{
    assign(settings, CMProperty_ColorTemperature, neutralTemperature(meter));
    for (const tagCMProperty gain : channelGains)
        assign(settings, gain, findProperty(gain)->standard);
}

} // namespace zolens
