#pragma once

#include <zolens/CWCamera.h>

#include <QtNumeric>

#include <algorithm>
#include <vector>

/// What a camera tells through its output parameters, as values.
namespace cameravalues {

struct Range
{
    double lowest = 0.0;
    double highest = 0.0;
    double step = 0.0;
};

/// The position after the last one for a value that is not there.
template <typename T>
int positionIn(const std::vector<T>& values, const T& value)
{
    return int(std::find(values.begin(), values.end(), value) - values.begin());
}

inline std::vector<QSize> sizesOf(CWCamera& camera)
{
    std::vector<QSize> sizes;
    camera.previewSizes(&sizes);
    return sizes;
}

inline std::vector<int> formatsOf(CWCamera& camera)
{
    std::vector<int> formats;
    camera.previewFormats(&formats);
    return formats;
}

inline int positionOf(CWCamera& camera, const QSize& size)
{
    return positionIn(sizesOf(camera), size);
}

inline int positionOfFormat(CWCamera& camera, int format)
{
    return positionIn(formatsOf(camera), format);
}

inline QSize previewSizeOf(CWCamera& camera)
{
    QSize size;
    camera.previewSize(&size);
    return size;
}

inline QSize stillSizeOf(CWCamera& camera)
{
    QSize size;
    camera.stillSize(&size);
    return size;
}

/// Not a number when the camera does not tell.
inline double valueOf(CWCamera& camera, tagCMProperty id)
{
    double value = 0.0;
    return camera.getProperty(id, &value) == 0 ? value : qQNaN();
}

inline Range rangeOf(CWCamera& camera, tagCMProperty id)
{
    Range range;
    camera.propertyRange(id, &range.lowest, &range.highest, &range.step);
    return range;
}

} // namespace cameravalues
