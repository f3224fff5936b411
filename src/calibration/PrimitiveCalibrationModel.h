#pragma once

#include "calibration/PrimitiveCalibration.h"

#include <QAbstractTableModel>
#include <QList>

/// The one list of calibrations. Row 0 is always the built-in pixel calibration; the others are
/// read from the calibration file at first use and written back when the model is deleted. That
/// happens with the application object, whose name the file's place depends on, or at the latest at
/// the end of the process. GUI thread only.
class PrimitiveCalibrationModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Using, Name, Value, DefaultUnit, Remark, ColumnCount };

    /// Made at the first call.
    static PrimitiveCalibrationModel& instance();
    ~PrimitiveCalibrationModel() override;

    /// The translated name of row 0.
    static QString pixelRowName();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    /// The check-state role moves the check mark to the index's row, whatever the value.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    /// Both leave row 0 alone, and false says that nothing was done. Removing leaves the check mark
    /// at its row number.
    bool insertRows(int row, int count, const QModelIndex& parent = {}) override;
    bool removeRows(int row, int count, const QModelIndex& parent = {}) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// `row` must exist.
    PrimitiveCalibration calibrationAt(int row) const;
    /// Not valid where no row has the name.
    PrimitiveCalibration calibrationByName(const QString& name) const;
    bool isNameAvailable(const QString& name) const;

    void appendCalibration(const PrimitiveCalibration& calibration);
    /// Among the rows after row 0. A move resets the model and returns the check mark to row 0
    /// without rowChecked.
    bool moveUp(int row);
    bool moveDown(int row);

    /// Replace the rows after row 0 by those of a file, or write them. False only when the file
    /// cannot be opened; a damaged file holds no rows.
    bool load(const QString& path, bool binary);
    bool save(const QString& path, bool binary) const;

public Q_SLOTS:
    void checkRow(int row);

Q_SIGNALS:
    void rowChecked(int row);

private:
    PrimitiveCalibrationModel();

    bool hasRow(int row) const;
    void moveCheck(const QModelIndex& index);
    void writeField(const QModelIndex& index, const QVariant& value);
    void swapCalibrations(int row, int other);

    QList<PrimitiveCalibration> calibrations; // never empty
    int currentRow = 0;
};
