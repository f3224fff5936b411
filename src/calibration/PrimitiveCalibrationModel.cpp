#include "calibration/PrimitiveCalibrationModel.h"

#include "calibration/CalibrationFile.h"
#include "calibration/PrimitiveUnit.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <memory>

namespace {

constexpr bool binaryDefaultFile = false;

/// The directory is made, so that both reading and writing find it.
QString defaultFilePath()
{
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
                              QStringLiteral("/Measure/");
    QDir().mkpath(directory);
    return directory + (binaryDefaultFile ? QLatin1String("calibrations.dat")
                                          : QLatin1String("calibrations.json"));
}

void warnAboutOpening()
{
    qWarning("Couldn't open calibration file.");
}

bool sameName(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QVariant displayValue(const PrimitiveCalibration& calibration, int column)
{
    switch (column) {
    case PrimitiveCalibrationModel::Name:
        return calibration.name;
    case PrimitiveCalibrationModel::Value:
        return QStringLiteral("%1").arg(calibration.value);
    case PrimitiveCalibrationModel::DefaultUnit:
        return PrimitiveUnit::fullName(calibration.defaultUnitKey);
    case PrimitiveCalibrationModel::Remark:
        return calibration.remark;
    default:
        return {};
    }
}

/// Its static end covers a process that ends through exit(), where no application object goes.
std::unique_ptr<PrimitiveCalibrationModel>& theModel()
{
    static std::unique_ptr<PrimitiveCalibrationModel> model;
    return model;
}

void deleteTheModel()
{
    theModel().reset();
}

} // namespace

PrimitiveCalibrationModel& PrimitiveCalibrationModel::instance()
{
    std::unique_ptr<PrimitiveCalibrationModel>& model = theModel();
    if (!model) {
        model.reset(new PrimitiveCalibrationModel);
        // Runs at the start of the application object's end, while everything that saving needs
        // is still there.
        qAddPostRoutine(deleteTheModel);
    }
    return *model;
}

PrimitiveCalibrationModel::PrimitiveCalibrationModel()
{
    calibrations.append({pixelRowName(), 1.0, tr("Measure images in pixels, this is the default."),
                         PrimitiveUnit::pixelKey()});
    const QString path = defaultFilePath();
    qDebug().noquote() << "Loading calibration file" << path;
    load(path, binaryDefaultFile);
    currentRow = 0;
}

PrimitiveCalibrationModel::~PrimitiveCalibrationModel()
{
    save(defaultFilePath(), binaryDefaultFile);
}

QString PrimitiveCalibrationModel::pixelRowName()
{
    return tr("In pixels");
}

int PrimitiveCalibrationModel::rowCount(const QModelIndex&) const
{
    return calibrations.size();
}

int PrimitiveCalibrationModel::columnCount(const QModelIndex&) const
{
    return ColumnCount;
}

QVariant PrimitiveCalibrationModel::data(const QModelIndex& index, int role) const
{
    if (!hasRow(index.row()))
        return {};
    if (role == Qt::CheckStateRole && index.column() == Using)
        return int(index.row() == currentRow ? Qt::Checked : Qt::Unchecked);
    if (role == Qt::DisplayRole)
        return displayValue(calibrations.at(index.row()), index.column());
    return {};
}

bool PrimitiveCalibrationModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!hasRow(index.row()))
        return false;
    if (role == Qt::CheckStateRole && index.column() == Using)
        moveCheck(index);
    else if (role == Qt::EditRole)
        writeField(index, value);
    return true;
}

QVariant PrimitiveCalibrationModel::headerData(int section, Qt::Orientation orientation,
                                               int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return QStringLiteral("%1").arg(section);
    switch (section) {
    case Using:
        return tr("Using");
    case Name:
        return tr("Name");
    case Value:
        return tr("Value");
    case DefaultUnit:
        return tr("Default unit");
    case Remark:
        return tr("Remark");
    default:
        return {};
    }
}

bool PrimitiveCalibrationModel::insertRows(int row, int count, const QModelIndex& parent)
{
    if (row < 1 || row > rowCount() || count < 1)
        return false;
    beginInsertRows(parent, row, row + count - 1);
    for (int i = 0; i < count; ++i)
        calibrations.insert(row, PrimitiveCalibration());
    endInsertRows();
    return true;
}

bool PrimitiveCalibrationModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (row < 1 || count < 1 || count > rowCount() - row)
        return false;
    beginRemoveRows(parent, row, row + count - 1);
    calibrations.erase(calibrations.begin() + row, calibrations.begin() + row + count);
    endRemoveRows();
    return true;
}

Qt::ItemFlags PrimitiveCalibrationModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags base = QAbstractTableModel::flags(index);
    return index.column() == Using ? base | Qt::ItemIsUserCheckable : base;
}

PrimitiveCalibration PrimitiveCalibrationModel::calibrationAt(int row) const
{
    return calibrations.at(row);
}

PrimitiveCalibration PrimitiveCalibrationModel::calibrationByName(const QString& name) const
{
    for (const PrimitiveCalibration& calibration : calibrations) {
        if (sameName(calibration.name, name))
            return calibration;
    }
    return {};
}

bool PrimitiveCalibrationModel::isNameAvailable(const QString& name) const
{
    return !name.isEmpty() && std::none_of(calibrations.begin(), calibrations.end(),
                                           [&name](const PrimitiveCalibration& calibration) {
                                               return sameName(calibration.name, name);
                                           });
}

void PrimitiveCalibrationModel::appendCalibration(const PrimitiveCalibration& calibration)
{
    beginInsertRows({}, rowCount(), rowCount());
    calibrations.append(calibration);
    endInsertRows();
}

bool PrimitiveCalibrationModel::moveUp(int row)
{
    if (row < 2 || row >= rowCount())
        return false;
    swapCalibrations(row, row - 1);
    return true;
}

bool PrimitiveCalibrationModel::moveDown(int row)
{
    if (row < 1 || row >= rowCount() - 1)
        return false;
    swapCalibrations(row, row + 1);
    return true;
}

bool PrimitiveCalibrationModel::load(const QString& path, bool binary)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        warnAboutOpening();
        return false;
    }
    const QList<PrimitiveCalibration> loaded = CalibrationFile::decode(file.readAll(), binary);
    beginResetModel();
    calibrations = calibrations.mid(0, 1) + loaded;
    endResetModel();
    return true;
}

bool PrimitiveCalibrationModel::save(const QString& path, bool binary) const
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        warnAboutOpening();
        return false;
    }
    file.write(CalibrationFile::encode(calibrations.mid(1), binary));
    return true;
}

void PrimitiveCalibrationModel::checkRow(int row)
{
    setData(index(row, Using), true, Qt::CheckStateRole);
}

bool PrimitiveCalibrationModel::hasRow(int row) const
{
    return row >= 0 && row < rowCount();
}

void PrimitiveCalibrationModel::moveCheck(const QModelIndex& index)
{
    if (index.row() == currentRow)
        return;
    const QModelIndex old = this->index(currentRow, index.column());
    currentRow = index.row();
    emit dataChanged(index, index);
    emit dataChanged(old, old);
    emit rowChecked(currentRow);
}

void PrimitiveCalibrationModel::writeField(const QModelIndex& index, const QVariant& value)
{
    PrimitiveCalibration& calibration = calibrations[index.row()];
    switch (index.column()) {
    case Name:
        calibration.name = value.toString();
        break;
    case Value:
        calibration.value = value.toDouble();
        break;
    case DefaultUnit:
        calibration.defaultUnitKey = value.toString();
        break;
    case Remark:
        calibration.remark = value.toString();
        break;
    default:
        break;
    }
    emit dataChanged(index, index);
}

void PrimitiveCalibrationModel::swapCalibrations(int row, int other)
{
    beginResetModel();
    calibrations.swapItemsAt(row, other);
    currentRow = 0;
    endResetModel();
}
