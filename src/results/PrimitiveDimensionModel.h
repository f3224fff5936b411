#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QString>
#include <QVector>

/// The table of measured values: a row for each dimension tool, a fixed column for each kind of
/// value. Values are in display units and degrees; one of zero or below means that there is none
/// and shows as an empty cell. Owned by the tool manager, which ties rows to tools by the row
/// number. GUI thread only.
class PrimitiveDimensionModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit PrimitiveDimensionModel(QObject* parent = nullptr);
    ~PrimitiveDimensionModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    bool insertRows(int row, int count, const QModelIndex& parent = {}) override;
    bool removeRows(int row, int count, const QModelIndex& parent = {}) override;

    /// Writes all values of a tool and announces them once, as the span of cells that they cover.
    /// Keys that the table lacks are skipped. False when nothing was written.
    bool setValues(int row, const QHash<QString, double>& values);
    /// Writes the row number as "id" of every row from `firstRow` on and announces the cells once.
    void renumber(int firstRow = 0);

    static bool hasKey(const QString& key);
    /// 0, which is the column of "id", for a key that the table lacks.
    static int columnOfKey(const QString& key);
    /// Empty for a column outside the table, as is the label's text.
    static QString keyOfColumn(int column);
    static QVariant labelOfColumn(int column);

private:
    static void fillColumnTables();
    bool hasRow(int row) const;

    // Shared by all instances and filled anew by each, with labels in the language of that moment.
    static QHash<int, QString> keys;
    static QHash<int, QString> labels;

    QVector<QHash<QString, double>> rows;
};
