#include "PictureSizes.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace zolens {
namespace {

constexpr QSize commonSizes[] = {
    {320, 240},   {640, 360},   {640, 480},   {800, 600},   {1024, 768},  {1280, 720},
    {1280, 960},  {1280, 1024}, {1600, 1200}, {1920, 1080}, {2048, 1536}, {2560, 1440},
    {2592, 1944}, {3264, 2448}, {3840, 2160}, {4096, 3072}, {4608, 3456}, {5472, 3648},
};

bool isOnGrid(int length, int least, int most, int step)
{
    return length >= least && length <= most && (length - least) % std::max(step, 1) == 0;
}

auto byArea(const QSize& size)
{
    return std::tuple(qint64{size.width()} * size.height(), size.width());
}

} // namespace

std::vector<QSize> commonSizesOn(const SizeGrid& grid)
{
    std::vector<QSize> sizes;
    std::copy_if(std::begin(commonSizes), std::end(commonSizes), std::back_inserter(sizes),
                 [&grid](const QSize& size) {
                     return isOnGrid(size.width(), grid.least.width(), grid.most.width(),
                                     grid.step.width()) &&
                            isOnGrid(size.height(), grid.least.height(), grid.most.height(),
                                     grid.step.height());
                 });
    return sizes;
}

void sortByArea(std::vector<QSize>* sizes)
{
    std::sort(sizes->begin(), sizes->end(),
              [](const QSize& a, const QSize& b) { return byArea(a) < byArea(b); });
    sizes->erase(std::unique(sizes->begin(), sizes->end()), sizes->end());
}

} // namespace zolens
