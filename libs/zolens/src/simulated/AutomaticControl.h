#pragma once

#include "SimulatedSettings.h"

class QImage;

namespace zolens {

/// One step of automatic exposure towards the target, by the picture that the present settings
/// make of `meter`. Changes exposure time first, then gain; the time in whole periods of the power
/// frequency where it is long enough for one. Nothing changes close to the target.
void adjustExposure(SimulatedSettings& settings, const QImage& meter);

/// What makes the bright field of `meter` neutral: a colour temperature, and equal channel gains.
double neutralTemperature(const QImage& meter);
/// One step of automatic white balance.
void approachWhiteBalance(SimulatedSettings& settings, const QImage& meter);
/// All steps at once.
void balanceWhite(SimulatedSettings& settings, const QImage& meter);

/// Mean luminance of the whole picture as exposed, before tone and colour adjustments.
double meteredLuminance(const SimulatedSettings& settings, const QImage& meter);

} // namespace zolens
