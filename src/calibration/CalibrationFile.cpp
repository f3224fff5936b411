#include "calibration/CalibrationFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QLatin1String listKey("calibrations");

} // namespace

QList<PrimitiveCalibration> CalibrationFile::decode(const QByteArray& content, bool binary)
{
    const QJsonDocument document =
        binary ? QJsonDocument::fromBinaryData(content) : QJsonDocument::fromJson(content);
    const QJsonArray list = document.object().value(listKey).toArray();
    QList<PrimitiveCalibration> calibrations;
    for (const QJsonValue& element : list)
        calibrations.append(PrimitiveCalibration::fromJson(element.toObject()));
    return calibrations;
}

QByteArray CalibrationFile::encode(const QList<PrimitiveCalibration>& calibrations, bool binary)
{
    QJsonArray list;
    for (const PrimitiveCalibration& calibration : calibrations)
        list.append(calibration.toJson());
    const QJsonDocument document(QJsonObject{{listKey, list}});
    return binary ? document.toBinaryData() : document.toJson();
}
