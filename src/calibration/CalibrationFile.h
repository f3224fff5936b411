#pragma once

#include "calibration/PrimitiveCalibration.h"

#include <QByteArray>
#include <QList>

/// The content of a calibration file: a JSON object with the array "calibrations", as indented text
/// or, with `binary`, in Qt's compact form.
namespace CalibrationFile {

/// Whatever is not such an object gives an empty list; records are taken as they stand.
QList<PrimitiveCalibration> decode(const QByteArray& content, bool binary);
QByteArray encode(const QList<PrimitiveCalibration>& calibrations, bool binary);

} // namespace CalibrationFile
