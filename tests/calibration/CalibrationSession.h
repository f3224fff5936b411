#pragma once

#include "calibration/PrimitiveCalibrationModel.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

/// What the tests of the calibrations share: lives of the program, records and the default file.
namespace CalibrationSession {

struct Application
{
    int argumentCount = 1;
    char program[5] = "orvo";
    char* arguments[2] = {program, nullptr};
    QCoreApplication object{argumentCount, arguments};
};

/// One life of the program: the model that is first used in it ends with it.
struct Session final : Application
{
    PrimitiveCalibrationModel& model = PrimitiveCalibrationModel::instance();
};

inline PrimitiveCalibration record(const char* name, double value = 1e-6)
{
    return {QString::fromLatin1(name), value, QStringLiteral("a remark"), QStringLiteral("2_mm")};
}

inline void addAandB(PrimitiveCalibrationModel& model)
{
    model.appendCalibration(record("A"));
    model.appendCalibration(record("B"));
}

/// The names of all rows with a blank between them.
inline QString names(const PrimitiveCalibrationModel& model)
{
    QStringList list;
    for (int row = 0; row < model.rowCount(); ++row)
        list += model.calibrationAt(row).name;
    return list.join(QLatin1Char(' '));
}

/// The rows that show a check mark.
inline QVector<int> checkedRows(const PrimitiveCalibrationModel& model)
{
    QVector<int> rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        if (model.index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked)
            rows += row;
    }
    return rows;
}

inline void write(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

inline QString defaultDirectory()
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/Orvo/Orvo/Measure");
}

inline QString defaultFile()
{
    return defaultDirectory() + QStringLiteral("/calibrations.json");
}

inline void setNames()
{
    QCoreApplication::setApplicationName(QStringLiteral("Orvo"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orvo"));
}

/// The next session finds no calibrations.
inline void emptyDefaultFile()
{
    QDir(defaultDirectory()).removeRecursively();
    write(defaultFile(), "{}");
}

} // namespace CalibrationSession
