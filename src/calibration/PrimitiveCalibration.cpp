#include "calibration/PrimitiveCalibration.h"

#include "calibration/PrimitiveUnit.h"

#include <QJsonObject>

#include <utility>

namespace {

const QLatin1String nameKey("name");
const QLatin1String valueKey("value");
const QLatin1String remarkKey("remark");
const QLatin1String defaultUnitKeyKey("default_unit_key");

} // namespace

PrimitiveCalibration::PrimitiveCalibration(QString calibrationName, double metresPerPixel,
                                           QString note, QString unitKey)
    : name(std::move(calibrationName)),
      value(metresPerPixel),
      remark(std::move(note)),
      defaultUnitKey(std::move(unitKey))
{
}

bool PrimitiveCalibration::isValid() const
{
    return !name.isEmpty() && !defaultUnitKey.isEmpty() && value > 0.0;
}

double PrimitiveCalibration::lengthToUnit(double pixels, const QString& unitKey) const
{
    if (!(value > 0.0) || unitKey.isEmpty())
        return pixels;
    return (value * pixels) / PrimitiveUnit::factor(unitKey);
}

double PrimitiveCalibration::areaToUnit(double squarePixels, const QString& unitKey) const
{
    if (!(value > 0.0) || unitKey.isEmpty())
        return squarePixels;
    const double factor = PrimitiveUnit::factor(unitKey);
    return (value * squarePixels * value) / (factor * factor);
}

PrimitiveCalibration PrimitiveCalibration::fromJson(const QJsonObject& json)
{
    return {json.value(nameKey).toString(), json.value(valueKey).toDouble(),
            json.value(remarkKey).toString(), json.value(defaultUnitKeyKey).toString()};
}

QJsonObject PrimitiveCalibration::toJson() const
{
    return {{nameKey, name},
            {valueKey, value},
            {remarkKey, remark},
            {defaultUnitKeyKey, defaultUnitKey}};
}

double lengthToMetres(double value, const QString& unitKey)
{
    return value * PrimitiveUnit::factor(unitKey);
}
