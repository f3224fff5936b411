#pragma once

#include "RowConversions.h"
#include "SensorFormat.h"

namespace zolens {

/// How rows of samples of eight bits become 32 bit RGB; not for Bayer patterns.
RowConversion::Function rowFunction(SensorFormat::Layout layout);

const libyuv::YuvConstants* matrixFor(SensorFormat::Colors colors);

} // namespace zolens
