#include "CameraControls.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <cmath>

namespace zolens {
namespace {

/// The absolute exposure time counts in units of 100 microseconds.
constexpr double exposureUnit = 100.0;
/// Longer times are rubbish rather than light for a microscope's camera.
constexpr qint64 longestExposure = 60000000; // microseconds

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

/// What their numbers mean differs from device to device.
constexpr quint32 withoutUnit[] = {V4L2_CID_GAIN, V4L2_CID_ANALOGUE_GAIN, V4L2_CID_EXPOSURE};

// USB cameras offer the aperture priority for their automatic mode, since they have no aperture.
constexpr int automaticModes[] = {V4L2_EXPOSURE_APERTURE_PRIORITY, V4L2_EXPOSURE_AUTO,
                                  V4L2_EXPOSURE_SHUTTER_PRIORITY};
constexpr int manualModes[] = {V4L2_EXPOSURE_MANUAL, V4L2_EXPOSURE_SHUTTER_PRIORITY};

template <typename Values, typename Value>
bool contains(const Values& values, Value value)
{
    return std::find(std::begin(values), std::end(values), value) != std::end(values);
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
    noteAll();
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
                 double(control.step) * found->scale, double(control.standard) * found->scale,
                 !contains(withoutUnit, found->control)};
}

std::optional<double> CameraControls::read(tagCMProperty id)
{
    const auto found = mapping(id);
    const auto value = found ? controls.read(found->control) : std::nullopt;
    if (!value)
        return std::nullopt;
    noteExposureTime();
    answers.noteValue(id, double(*value) * found->scale);
    return answers.value(id);
}

bool CameraControls::write(tagCMProperty id, double value)
{
    const auto found = mapping(id);
    const auto limits = range(id);
    if (!found || std::isnan(value))
        return false;
    if (id == CMProperty_ExposureTime && isExposureAutomatic())
        return false;
    const double held = std::clamp(value, limits->lowest, limits->highest);
    return set(found->control, std::llround(held / found->scale));
}

/// Some drivers take a time all the same, and end the automatic mode by it.
bool CameraControls::isExposureAutomatic()
{
    const auto mode = controls.read(V4L2_CID_EXPOSURE_AUTO);
    return mode == V4L2_EXPOSURE_AUTO || mode == V4L2_EXPOSURE_APERTURE_PRIORITY;
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
    controls.read(V4L2_CID_AUTO_WHITE_BALANCE);
    noteSwitches();
    return answers.whiteBalanceMode();
}

std::vector<int> CameraControls::powerFrequencies() const
{
    const ControlRange* menu = controls.range(V4L2_CID_POWER_LINE_FREQUENCY);
    return menu ? menu->menu : std::vector<int>();
}

int CameraControls::powerFrequency()
{
    controls.read(V4L2_CID_POWER_LINE_FREQUENCY);
    noteSwitches();
    return answers.powerFrequency();
}

void CameraControls::setPowerFrequency(int value)
{
    if (contains(powerFrequencies(), value))
        set(V4L2_CID_POWER_LINE_FREQUENCY, value);
}

bool CameraControls::set(quint32 id, qint64 value)
{
    const bool written = controls.write(id, value);
    noteAll();
    return written;
}

std::chrono::microseconds CameraControls::exposureTime() const
{
    return std::chrono::microseconds(exposureMicroseconds);
}

void CameraControls::noteAll()
{
    for (const Row& row : rows) {
        const auto found = mapping(row.property);
        const auto value = found ? controls.lastRead(found->control) : std::nullopt;
        if (value)
            answers.noteValue(row.property, double(*value) * found->scale);
    }
    noteSwitches();
    noteExposureTime();
}

void CameraControls::noteSwitches()
{
    const auto lastRead = [this](quint32 id) { return controls.lastRead(id).value_or(0); };
    answers.noteWhiteBalanceMode(
        lastRead(V4L2_CID_AUTO_WHITE_BALANCE) != 0 ? CWWhiteBalance_Auto : CWWhiteBalance_Manual);
    answers.notePowerFrequency(int(lastRead(V4L2_CID_POWER_LINE_FREQUENCY)));
}

void CameraControls::noteExposureTime()
{
    const qint64 units = controls.lastRead(V4L2_CID_EXPOSURE_ABSOLUTE).value_or(0);
    exposureMicroseconds = std::clamp<qint64>(units * qint64(exposureUnit), 0, longestExposure);
}

} // namespace zolens
