#include "results/PrimitiveDimensionModel.h"

#include <algorithm>

namespace {

const QLatin1String idKey("id");

} // namespace

QHash<int, QString> PrimitiveDimensionModel::keys;
QHash<int, QString> PrimitiveDimensionModel::labels;

PrimitiveDimensionModel::PrimitiveDimensionModel(QObject* parent) : QAbstractTableModel(parent)
{
    fillColumnTables();
}

PrimitiveDimensionModel::~PrimitiveDimensionModel() = default;

void PrimitiveDimensionModel::fillColumnTables()
{
    keys.clear();
    labels.clear();
    const auto add = [](const QString& key, const QString& label) {
        const int column = keys.size();
        keys.insert(column, key);
        labels.insert(column, label);
    };
    add(idKey, tr("ID"));
    add(QStringLiteral("length"), tr("Length"));
    add(QStringLiteral("width"), tr("Width"));
    add(QStringLiteral("height"), tr("Height"));
    add(QStringLiteral("radius"), tr("Radius"));
    add(QStringLiteral("diameter"), tr("Diameter"));
    add(QStringLiteral("angle"), tr("Angle(°)"));
    add(QStringLiteral("distance"), tr("Distance"));
    add(QStringLiteral("perimeter"), tr("Perimeter"));
    add(QStringLiteral("area"), tr("Area"));
    add(QStringLiteral("padding"), QString());
}

int PrimitiveDimensionModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows.size();
}

int PrimitiveDimensionModel::columnCount(const QModelIndex&) const
{
    return keys.size();
}

QVariant PrimitiveDimensionModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !hasRow(index.row()))
        return {};
    const QString key = keyOfColumn(index.column());
    const double stored = rows.at(index.row()).value(key, 0.0);
    const double shown = key == idKey ? stored + 1.0 : stored;
    return shown > 0.0 ? QVariant(shown) : QVariant();
}

bool PrimitiveDimensionModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !hasRow(index.row()))
        return false;
    rows[index.row()].insert(keyOfColumn(index.column()), value.toDouble());
    emit dataChanged(index, index);
    return true;
}

QVariant PrimitiveDimensionModel::headerData(int section, Qt::Orientation orientation,
                                             int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Horizontal)
        return labelOfColumn(section);
    return QStringLiteral("%1").arg(section + 1);
}

bool PrimitiveDimensionModel::insertRows(int row, int count, const QModelIndex& parent)
{
    if (count < 1)
        return true;
    // A place that does not exist means the nearest one that does.
    const int first = std::clamp(row, 0, rows.size());
    beginInsertRows(parent, first, first + count - 1);
    rows.insert(first, count, {});
    endInsertRows();
    return true;
}

bool PrimitiveDimensionModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (row < 0 || count < 1 || count > rows.size() - row)
        return false;
    beginRemoveRows(parent, row, row + count - 1);
    rows.remove(row, count);
    endRemoveRows();
    return true;
}

bool PrimitiveDimensionModel::setValues(int row, const QHash<QString, double>& values)
{
    if (!hasRow(row))
        return false;
    int first = columnCount();
    int last = -1;
    for (auto value = values.begin(); value != values.end(); ++value) {
        const int column = keys.key(value.key(), -1);
        if (column < 0)
            continue;
        rows[row].insert(value.key(), value.value());
        first = std::min(first, column);
        last = std::max(last, column);
    }
    if (last < 0)
        return false;
    emit dataChanged(index(row, first), index(row, last));
    return true;
}

void PrimitiveDimensionModel::renumber(int firstRow)
{
    if (!hasRow(firstRow))
        return;
    for (int row = firstRow; row < rows.size(); ++row)
        rows[row].insert(idKey, row);
    const int column = columnOfKey(idKey);
    emit dataChanged(index(firstRow, column), index(rows.size() - 1, column));
}

bool PrimitiveDimensionModel::hasKey(const QString& key)
{
    return keys.key(key, -1) >= 0;
}

int PrimitiveDimensionModel::columnOfKey(const QString& key)
{
    return keys.key(key, 0);
}

QString PrimitiveDimensionModel::keyOfColumn(int column)
{
    return keys.value(column);
}

QVariant PrimitiveDimensionModel::labelOfColumn(int column)
{
    return labels.value(column);
}

bool PrimitiveDimensionModel::hasRow(int row) const
{
    return row >= 0 && row < rows.size();
}
