#include "zolens/CWCamera.h"

namespace {

constexpr int failure = -1;

bool isPosition(int index, const std::vector<QSize>& list)
{
    return index >= 0 && static_cast<std::size_t>(index) < list.size();
}

} // namespace

CWCamera::~CWCamera() = default;

int CWCamera::setPreviewSize(int index)
{
    std::vector<QSize> sizes;
    previewSizes(&sizes);
    return isPosition(index, sizes) ? selectPreviewSize(index) : failure;
}

int CWCamera::setStillCaptureSize(int index)
{
    std::vector<QSize> sizes;
    stillSizes(&sizes);
    return isPosition(index, sizes) ? selectStillSize(index) : failure;
}

double CWCamera::resetProperty(tagCMProperty id)
{
    if (!isPropertySupported(id))
        return 0.0;
    const double value = defaultValue(id);
    setProperty(id, value);
    return value;
}

bool CWCamera::isGone() const
{
    return false;
}

bool CWCamera::hasUnit(tagCMProperty)
{
    return true;
}
