#pragma once

#include "zolens/CameraTypes.h"

#include <QCoreApplication>
#include <QString>

namespace zolens {

/// Values of camera properties as texts with their units.
class PropertyText final
{
    Q_DECLARE_TR_FUNCTIONS(PropertyText)

public:
    static QString text(tagCMProperty id, double value);
    /// Without a unit.
    static QString number(double value);
    /// Up to three digits in the unit that suits.
    static QString exposureTime(double microseconds);
};

} // namespace zolens
