#pragma once

/// The logarithmic zoom: scale = 2^((level - 250) / 50). Levels run from 0 (3.125%) over 250 (100%)
/// to 500 (3200%); 50 levels double the size.
namespace ZoomLevel {

constexpr double actualSize = 250.0;

double toScale(double level);
/// The level of a scale above 0, not clamped.
double ofScale(double scale);
double clamped(double level);
/// The level raised or lowered by so many levels and clamped. A step that would pass 100% rests
/// there once; the next step goes on beyond.
double raised(double level, double levels);
double lowered(double level, double levels);

} // namespace ZoomLevel
