#pragma once

#include <QString>

class QJsonObject;

/// One named calibration: how much of the world a pixel of the image covers. The default state is
/// not valid and is what a failed look-up gives.
struct PrimitiveCalibration
{
    PrimitiveCalibration() = default;
    PrimitiveCalibration(QString calibrationName, double metresPerPixel, QString note,
                         QString unitKey);

    /// Has a name, a default unit and a value above zero.
    bool isValid() const;

    /// Pixels, or square pixels, in the unit of `unitKey`; unchanged without a value above zero or
    /// without a key.
    double lengthToUnit(double pixels, const QString& unitKey) const;
    double areaToUnit(double squarePixels, const QString& unitKey) const;

    /// A missing or mistyped entry reads as an empty text or 0.
    static PrimitiveCalibration fromJson(const QJsonObject& json);
    QJsonObject toJson() const;

    QString name;       ///< Identifies the record in the list, without regard to case.
    double value = 0.0; ///< Metres per pixel.
    QString remark;
    QString defaultUnitKey; ///< The display unit that is preselected with this calibration.
};

/// A length in the unit of `unitKey`, in metres.
double lengthToMetres(double value, const QString& unitKey);
