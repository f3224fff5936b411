#include "CameraControls.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <cmath>

namespace zolens {
namespace {

/// The absolute exposure time counts in units of 100 microseconds.
constexpr double exposureUnit = 100.0;

struct Row
{
    tagCMProperty property;
    quint32 control;
    double scale;
};

// Of several controls for a property, the first that the device has counts. Green has none: only
// red and blue are balanced against it.
constexpr Row rows[] = {
    {CMProperty_Brightness, V4L2_CID_BRIGHTNESS, 1.0},
    {CMProperty_Contrast, V4L2_CID_CONTRAST, 1.0},
    {CMProperty_Hue, V4L2_CID_HUE, 1.0},
    {CMProperty_Saturation, V4L2_CID_SATURATION, 1.0},
    {CMProperty_Gamma, V4L2_CID_GAMMA, 1.0},
    {CMProperty_Sharpness, V4L2_CID_SHARPNESS, 1.0},
    {CMProperty_Gain, V4L2_CID_GAIN, 1.0},
    {CMProperty_Gain, V4L2_CID_ANALOGUE_GAIN, 1.0},
    {CMProperty_ExposureTime, V4L2_CID_EXPOSURE_ABSOLUTE, exposureUnit},
    {CMProperty_ExposureTime, V4L2_CID_EXPOSURE, 1.0},
    {CMProperty_RedGain, V4L2_CID_RED_BALANCE, 1.0},
    {CMProperty_BlueGain, V4L2_CID_BLUE_BALANCE, 1.0},
    {CMProperty_ColorTemperature, V4L2_CID_WHITE_BALANCE_TEMPERATURE, 1.0},
};

// USB cameras offer the aperture priority for their automatic mode, since they have no aperture.
constexpr int automaticModes[] = {V4L2_EXPOSURE_APERTURE_PRIORITY, V4L2_EXPOSURE_AUTO,
                                  V4L2_EXPOSURE_SHUTTER_PRIORITY};
constexpr int manualModes[] = {V4L2_EXPOSURE_MANUAL, V4L2_EXPOSURE_SHUTTER_PRIORITY};

bool contains(const std::vector<int>& values, int value)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

template <std::size_t count>
std::optional<int> firstOffered(const std::vector<int>& offered, const int (&wanted)[count])
{
    const auto* found = std::find_if(std::begin(wanted), std::end(wanted),
                                     [&offered](int value) { return contains(offered, value); });
    if (found == std::end(wanted))
        return std::nullopt;
    return *found;
}

} // namespace

CameraControls::CameraControls(std::shared_ptr<const V4l2Device> device)
    : controls(std::move(device))
{
    noteExposureTime();
}

std::optional<CameraControls::Mapping> CameraControls::mapping(tagCMProperty id) const
{
    const auto* row = std::find_if(std::begin(rows), std::end(rows), [this, id](const Row& entry) {
        return entry.property == id && controls.range(entry.control);
    });
    if (row == std::end(rows))
        return std::nullopt;
    return Mapping{row->control, row->scale};
}

std::optional<CameraControls::Range> CameraControls::range(tagCMProperty id) const
{
    const auto found = mapping(id);
    if (!found)
        return std::nullopt;
    const ControlRange& control = *controls.range(found->control);
    return Range{double(control.lowest) * found->scale, double(control.highest) * found->scale,
                 double(control.step) * found->scale, double(control.standard) * found->scale};
}

std::optional<double> CameraControls::read(tagCMProperty id)
{
    const auto found = mapping(id);
    const auto value = found ? controls.read(found->control) : std::nullopt;
    if (!value)
        return std::nullopt;
    noteExposureTime();
    return double(*value) * found->scale;
}

bool CameraControls::write(tagCMProperty id, double value)
{
    const auto found = mapping(id);
    const auto limits = range(id);
    if (!found || std::isnan(value))
        return false;
    const double held = std::clamp(value, limits->lowest, limits->highest);
    return set(found->control, std::llround(held / found->scale));
}

/// Both controls are written where a device has both: one for the time, one for the gain.
void CameraControls::setAutoExposure(bool on)
{
    if (const ControlRange* menu = controls.range(V4L2_CID_EXPOSURE_AUTO)) {
        const auto mode =
            on ? firstOffered(menu->menu, automaticModes) : firstOffered(menu->menu, manualModes);
        if (mode)
            set(V4L2_CID_EXPOSURE_AUTO, *mode);
    }
    set(V4L2_CID_AUTOGAIN, on ? 1 : 0);
}

std::vector<int> CameraControls::whiteBalanceModes() const
{
    const bool automatic = controls.range(V4L2_CID_AUTO_WHITE_BALANCE);
    const bool manual = automatic || mapping(CMProperty_ColorTemperature) ||
                        mapping(CMProperty_RedGain) || mapping(CMProperty_BlueGain);
    std::vector<int> modes;
    if (automatic)
        modes.push_back(CWWhiteBalance_Auto);
    if (manual)
        modes.push_back(CWWhiteBalance_Manual);
    if (controls.range(V4L2_CID_DO_WHITE_BALANCE))
        modes.push_back(CWWhiteBalance_OnePush);
    return modes;
}

void CameraControls::setWhiteBalanceMode(int mode)
{
    if (!contains(whiteBalanceModes(), mode))
        return;
    set(V4L2_CID_AUTO_WHITE_BALANCE, mode == CWWhiteBalance_Auto ? 1 : 0);
    if (mode == CWWhiteBalance_OnePush)
        set(V4L2_CID_DO_WHITE_BALANCE, 1);
}

int CameraControls::whiteBalanceMode()
{
    const auto automatic = controls.read(V4L2_CID_AUTO_WHITE_BALANCE);
    return automatic.value_or(0) != 0 ? CWWhiteBalance_Auto : CWWhiteBalance_Manual;
}

std::vector<int> CameraControls::powerFrequencies() const
{
    const ControlRange* menu = controls.range(V4L2_CID_POWER_LINE_FREQUENCY);
    return menu ? menu->menu : std::vector<int>();
}

int CameraControls::powerFrequency()
{
    return int(controls.read(V4L2_CID_POWER_LINE_FREQUENCY).value_or(0));
}

void CameraControls::setPowerFrequency(int value)
{
    if (contains(powerFrequencies(), value))
        set(V4L2_CID_POWER_LINE_FREQUENCY, value);
}

bool CameraControls::set(quint32 id, qint64 value)
{
    const bool written = controls.write(id, value);
    noteExposureTime();
    return written;
}

std::chrono::microseconds CameraControls::exposureTime() const
{
    return std::chrono::microseconds(exposureMicroseconds);
}

void CameraControls::noteExposureTime()
{
    const qint64 units = controls.lastRead(V4L2_CID_EXPOSURE_ABSOLUTE).value_or(0);
    exposureMicroseconds = std::max<qint64>(0, units) * qint64(exposureUnit);
}

} // namespace zolens
