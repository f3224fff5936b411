#include "results/PrimitiveDimensionModel.h"
#include "support/ContextTranslator.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

namespace {

QString key(const char* name)
{
    return QString::fromLatin1(name);
}

/// The columns of a row that show a value.
QVector<int> filledColumns(const PrimitiveDimensionModel& model, int row)
{
    QVector<int> columns;
    for (int column = 0; column < model.columnCount(); ++column) {
        if (model.index(row, column).data().isValid())
            columns += column;
    }
    return columns;
}

/// Writes 10, 11, 12... under "length", one a row.
void fillLengths(PrimitiveDimensionModel& model, int rows)
{
    model.insertRows(0, rows);
    for (int row = 0; row < rows; ++row)
        model.setData(model.index(row, 1), 10.0 + row);
}

QVector<double> lengths(const PrimitiveDimensionModel& model)
{
    QVector<double> values;
    for (int row = 0; row < model.rowCount(); ++row)
        values += model.index(row, 1).data().toDouble();
    return values;
}

} // namespace

class tst_PrimitiveDimensionModel final : public QObject
{
    Q_OBJECT

private slots:
    void columnsAreFixed_data();
    void columnsAreFixed();
    void labelsAreTranslatedAtConstruction();
    void keysOutsideTheTableLeadToTheFirstColumn();
    void columnsOutsideTheTableHaveNoTexts();
    void headersNameColumnsAndCountFromOne();
    void cellsCannotBeEdited();
    void announcementsFitTheChanges();

    void newRowShowsItsNumberAlone();
    void valuesOfZeroOrBelowAreEmpty_data();
    void valuesOfZeroOrBelowAreEmpty();
    void writtenCellIsStoredAndAnnounced();
    void otherRolesAndRowsWriteNothing();
    void onlyTheDisplayRoleShows();

    void rowsAreInsertedWhereAsked();
    void placesThatDoNotExistMeanTheNearest();
    void firstRowCanBeRemoved();
    void rangesAreRemovedAtOnce();
    void rangePastTheEndRemovesNothing();

    void valuesOfARowAreAnnouncedOnce();
    void valuesUnderUnknownKeysAreSkipped();
    void renumberingAnnouncesOneSpan();
};

void tst_PrimitiveDimensionModel::columnsAreFixed_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("label");
    int column = 0;
    const auto row = [&column](const char* name, const char* label) {
        QTest::newRow(name) << column++ << QString::fromUtf8(label);
    };
    row("id", "ID");
    row("length", "Length");
    row("width", "Width");
    row("height", "Height");
    row("radius", "Radius");
    row("diameter", "Diameter");
    row("angle", "Angle(\xc2\xb0)");
    row("distance", "Distance");
    row("perimeter", "Perimeter");
    row("area", "Area");
    row("padding", "");
}

void tst_PrimitiveDimensionModel::columnsAreFixed()
{
    QFETCH(int, column);
    QFETCH(QString, label);
    const PrimitiveDimensionModel model;
    const QString name = key(QTest::currentDataTag());
    QCOMPARE(model.columnCount(), 11);
    QVERIFY(PrimitiveDimensionModel::hasKey(name));
    QCOMPARE(PrimitiveDimensionModel::columnOfKey(name), column);
    QCOMPARE(PrimitiveDimensionModel::keyOfColumn(column), name);
    QCOMPARE(PrimitiveDimensionModel::labelOfColumn(column), QVariant(label));
    QCOMPARE(model.headerData(column, Qt::Horizontal), QVariant(label));
}

void tst_PrimitiveDimensionModel::labelsAreTranslatedAtConstruction()
{
    {
        const ContextTranslator translator;
        const PrimitiveDimensionModel model;
        QCOMPARE(model.headerData(9, Qt::Horizontal).toString(),
                 QStringLiteral("PrimitiveDimensionModel|Area"));
    }
    QCOMPARE(PrimitiveDimensionModel::labelOfColumn(9).toString(),
             QStringLiteral("PrimitiveDimensionModel|Area"));
    const PrimitiveDimensionModel next;
    QCOMPARE(PrimitiveDimensionModel::labelOfColumn(9).toString(), QStringLiteral("Area"));
    QCOMPARE(next.columnCount(), 11);
}

void tst_PrimitiveDimensionModel::keysOutsideTheTableLeadToTheFirstColumn()
{
    const PrimitiveDimensionModel model;
    for (const QString& unknown : {key("radius2"), key("Length"), QString()}) {
        QVERIFY(!PrimitiveDimensionModel::hasKey(unknown));
        QCOMPARE(PrimitiveDimensionModel::columnOfKey(unknown), 0);
    }
}

void tst_PrimitiveDimensionModel::columnsOutsideTheTableHaveNoTexts()
{
    const PrimitiveDimensionModel model;
    for (int column : {-1, 11}) {
        QVERIFY(PrimitiveDimensionModel::keyOfColumn(column).isEmpty());
        QCOMPARE(PrimitiveDimensionModel::labelOfColumn(column), QVariant(QString()));
        QCOMPARE(model.headerData(column, Qt::Horizontal), QVariant(QString()));
    }
}

void tst_PrimitiveDimensionModel::headersNameColumnsAndCountFromOne()
{
    const PrimitiveDimensionModel model;
    QCOMPARE(model.headerData(10, Qt::Horizontal, Qt::DisplayRole), QVariant(QString()));
    QCOMPARE(model.headerData(0, Qt::Vertical, Qt::DisplayRole), QVariant(QStringLiteral("1")));
    QCOMPARE(model.headerData(41, Qt::Vertical), QVariant(QStringLiteral("42")));
    QVERIFY(!model.headerData(0, Qt::Vertical, Qt::EditRole).isValid());
}

void tst_PrimitiveDimensionModel::cellsCannotBeEdited()
{
    PrimitiveDimensionModel model;
    model.insertRows(0, 1);
    QCOMPARE(model.index(0, 1).flags(),
             Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren);
}

void tst_PrimitiveDimensionModel::announcementsFitTheChanges()
{
    PrimitiveDimensionModel model;
    const QAbstractItemModelTester tester(&model);
    fillLengths(model, 5);
    QVERIFY(model.insertRows(2, 3));
    QVERIFY(model.setValues(3, {{key("area"), 2.0}, {key("id"), 3.0}}));
    QVERIFY(model.removeRows(1, 4));
    model.renumber();
    QVERIFY(model.removeRows(0, model.rowCount()));
    QCOMPARE(model.rowCount(), 0);
}

void tst_PrimitiveDimensionModel::newRowShowsItsNumberAlone()
{
    PrimitiveDimensionModel model;
    QVERIFY(model.insertRow(0));
    QVERIFY(model.setData(model.index(0, 0), 0.0));
    QCOMPARE(filledColumns(model, 0), QVector<int>{0});
    QCOMPARE(model.index(0, 0).data(), QVariant(1.0));
}

void tst_PrimitiveDimensionModel::valuesOfZeroOrBelowAreEmpty_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("shown");
    QTest::newRow("zero") << 0.0 << false;
    QTest::newRow("negative") << -1.0 << false;
    QTest::newRow("not a number") << qQNaN() << false;
    QTest::newRow("tiny") << 1e-300 << true;
    QTest::newRow("large") << 1e12 << true;
}

void tst_PrimitiveDimensionModel::valuesOfZeroOrBelowAreEmpty()
{
    QFETCH(double, value);
    QFETCH(bool, shown);
    PrimitiveDimensionModel model;
    model.insertRow(0);
    const QModelIndex radius = model.index(0, PrimitiveDimensionModel::columnOfKey(key("radius")));
    QVERIFY(model.setData(radius, value));
    QCOMPARE(radius.data(), shown ? QVariant(value) : QVariant());
}

void tst_PrimitiveDimensionModel::writtenCellIsStoredAndAnnounced()
{
    PrimitiveDimensionModel model;
    model.insertRows(0, 2);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    const QModelIndex angle = model.index(1, 6);
    QVERIFY(model.setData(angle, 90.0));
    QCOMPARE(angle.data(), QVariant(90.0));
    QCOMPARE(PrimitiveDimensionModel::keyOfColumn(6), key("angle"));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), angle);
    QCOMPARE(changed.at(0).at(1).toModelIndex(), angle);
    QVERIFY(changed.at(0).at(2).value<QVector<int>>().isEmpty());
    QVERIFY(model.setData(angle, 45.0));
    QCOMPARE(angle.data(), QVariant(45.0));
}

void tst_PrimitiveDimensionModel::otherRolesAndRowsWriteNothing()
{
    PrimitiveDimensionModel model;
    model.insertRow(0);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(!model.setData(model.index(0, 1), 5.0, Qt::DisplayRole));
    QVERIFY(!model.index(0, 1).data().isValid());
    QVERIFY(!model.setData(QModelIndex(), 5.0));
    QVERIFY(!model.setValues(1, {{key("area"), 5.0}}));
    QVERIFY(!model.setValues(-1, {{key("area"), 5.0}}));
    model.renumber(1);
    model.renumber(-1);
    QCOMPARE(changed.size(), 0);
}

void tst_PrimitiveDimensionModel::onlyTheDisplayRoleShows()
{
    PrimitiveDimensionModel model;
    fillLengths(model, 1);
    QVERIFY(model.index(0, 1).data(Qt::DisplayRole).isValid());
    QVERIFY(!model.index(0, 1).data(Qt::EditRole).isValid());
    QVERIFY(!model.index(0, 1).data(Qt::TextAlignmentRole).isValid());
    QVERIFY(!model.data(QModelIndex()).isValid());
}

void tst_PrimitiveDimensionModel::rowsAreInsertedWhereAsked()
{
    PrimitiveDimensionModel model;
    fillLengths(model, 2);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QVERIFY(model.insertRows(1, 2));
    QCOMPARE(inserted.at(0).at(1).toInt(), 1);
    QCOMPARE(inserted.at(0).at(2).toInt(), 2);
    QCOMPARE(lengths(model), QVector<double>({10.0, 0.0, 0.0, 11.0}));
}

void tst_PrimitiveDimensionModel::placesThatDoNotExistMeanTheNearest()
{
    PrimitiveDimensionModel model;
    const QAbstractItemModelTester tester(&model);
    fillLengths(model, 2);
    QVERIFY(model.insertRows(9, 1));
    QVERIFY(model.insertRows(-3, 1));
    QVERIFY(model.insertRows(0, 0));
    QCOMPARE(lengths(model), QVector<double>({0.0, 10.0, 11.0, 0.0}));
}

void tst_PrimitiveDimensionModel::firstRowCanBeRemoved()
{
    PrimitiveDimensionModel model;
    fillLengths(model, 2);
    QVERIFY(model.removeRows(0, 1));
    QCOMPARE(lengths(model), QVector<double>{11.0});
}

void tst_PrimitiveDimensionModel::rangesAreRemovedAtOnce()
{
    PrimitiveDimensionModel model;
    fillLengths(model, 6);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QVERIFY(model.removeRows(1, 3));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(lengths(model), QVector<double>({10.0, 14.0, 15.0}));
}

void tst_PrimitiveDimensionModel::rangePastTheEndRemovesNothing()
{
    PrimitiveDimensionModel model;
    fillLengths(model, 3);
    QVERIFY(!model.removeRows(2, 5));
    QVERIFY(!model.removeRows(-1, 1));
    QVERIFY(!model.removeRows(3, 1));
    QVERIFY(!model.removeRows(1, std::numeric_limits<int>::max()));
    QCOMPARE(model.rowCount(), 3);
}

void tst_PrimitiveDimensionModel::valuesOfARowAreAnnouncedOnce()
{
    PrimitiveDimensionModel model;
    model.insertRows(0, 3);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.setValues(1, {{key("area"), 6.0}, {key("width"), 2.0}, {key("height"), 3.0}}));
    QCOMPARE(filledColumns(model, 1), QVector<int>({0, 2, 3, 9}));
    QCOMPARE(model.index(1, 9).data(), QVariant(6.0));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), model.index(1, 2));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), model.index(1, 9));
    QCOMPARE(filledColumns(model, 0), filledColumns(model, 2));
}

void tst_PrimitiveDimensionModel::valuesUnderUnknownKeysAreSkipped()
{
    PrimitiveDimensionModel model;
    model.insertRows(0, 1);
    model.renumber();
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(!model.setValues(0, {{key("radius2"), 70.0}}));
    QVERIFY(!model.setValues(0, {}));
    QCOMPARE(changed.size(), 0);
    QVERIFY(model.setValues(0, {{key("radius2"), 70.0}, {key("radius"), 7.0}}));
    QCOMPARE(model.index(0, 0).data(), QVariant(1.0));
    QCOMPARE(model.index(0, 4).data(), QVariant(7.0));
    QCOMPARE(changed.at(0).at(0).toModelIndex(), model.index(0, 4));
}

void tst_PrimitiveDimensionModel::renumberingAnnouncesOneSpan()
{
    PrimitiveDimensionModel model;
    model.insertRows(0, 1000);
    model.renumber();
    QVERIFY(model.removeRows(300, 1));
    QCOMPARE(model.index(300, 0).data(), QVariant(302.0));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.renumber(300);
    for (int row = 0; row < model.rowCount(); ++row)
        QCOMPARE(model.index(row, 0).data(), QVariant(row + 1.0));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), model.index(300, 0));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), model.index(998, 0));
}

QTEST_MAIN(tst_PrimitiveDimensionModel)
#include "tst_PrimitiveDimensionModel.moc"
