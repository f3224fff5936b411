#pragma once

#include <QSize>

#include <vector>

namespace zolens {

/// The sizes of a device that takes any, in steps from the least one on.
struct SizeGrid
{
    QSize least;
    QSize most;
    QSize step;
};

/// Those of the sizes in common use that lie on the grid.
std::vector<QSize> commonSizesOn(const SizeGrid& grid);

/// From small to large, each once.
void sortByArea(std::vector<QSize>* sizes);

} // namespace zolens
