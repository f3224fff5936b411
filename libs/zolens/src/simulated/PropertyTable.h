#pragma once

#include "zolens/CameraTypes.h"

#include <vector>

namespace zolens {

/// What values a property of the simulated microscope takes.
struct PropertyRange
{
    tagCMProperty id;
    double lowest;
    double highest;
    double step;
    double standard;
};

const std::vector<PropertyRange>& propertyTable();

/// Null for an unknown property.
const PropertyRange* findProperty(tagCMProperty id);

/// The nearest value that the property takes.
double nearestValue(const PropertyRange& range, double value);

} // namespace zolens
