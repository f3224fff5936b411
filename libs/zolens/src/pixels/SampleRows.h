#pragma once

#include "SensorFormat.h"

namespace zolens {

/// Writes the upper eight bits of `count` samples from the sample with the number `first` on.
void unpackSamples(const SensorFormat& format, const uchar* data, std::size_t first,
                   std::size_t count, uchar* to);

} // namespace zolens
