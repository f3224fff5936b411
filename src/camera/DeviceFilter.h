#pragma once

#include <zolens/CWUVCFilter.h>

#include <vector>

/// The cameras that belong to the program, in the order in which the camera library tries them:
/// devices with a model name of their own first, the rows for any other device last.
const std::vector<CWUVCFilterItem>& deviceFilterRows();
