#include "calibration/PrimitiveCalibrationModel.h"

#include "calibration/CalibrationSession.h"
#include "calibration/PrimitiveUnit.h"
#include "support/ContextTranslator.h"

#include <QAbstractItemModelTester>
#include <QIdentityProxyModel>
#include <QSignalSpy>
#include <QtTest>

using namespace CalibrationSession;

namespace {

/// The model gives its rows for every parent, which views of tables do not mind and the model
/// tester does.
class FlatProxy final : public QIdentityProxyModel
{
public:
    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : QIdentityProxyModel::rowCount(parent);
    }
};

} // namespace

class tst_PrimitiveCalibrationModel final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setNames(); }
    void init() { emptyDefaultFile(); }

    void freshModelHoldsThePixelRowAlone();
    void pixelRowFollowsTheLanguage();
    void cellsShowTheRecord();
    void otherRolesAndRowsShowNothing();
    void headersNameColumnsAndCountFromZero();
    void onlyTheFirstColumnIsCheckable();
    void announcementsFitTheChanges();

    void checkMovesToARow();
    void checkCannotBeTakenOff();
    void checkOfAnotherColumnChangesNothing();
    void editRoleWritesFields();
    void otherRolesAndRowsWriteNothing();

    void namesAreFoundWithoutRegardToCase();
    void unknownNameGivesAnInvalidRecord();
    void nameIsAvailableUnlessEmptyOrTaken();

    void pixelRowCannotBeRemoved();
    void nothingIsInsertedAboveThePixelRow();
    void insertedRowsAreDefaultRecords();
    void rangesAreRemoved();
    void removalLeavesTheCheckAtItsRowNumber();
    void movesStayBelowThePixelRow();
    void moveReturnsTheCheckSilently();
};

void tst_PrimitiveCalibrationModel::freshModelHoldsThePixelRowAlone()
{
    Session session;
    QCOMPARE(session.model.rowCount(), 1);
    QCOMPARE(session.model.columnCount(), 5);
    const PrimitiveCalibration pixels = session.model.calibrationAt(0);
    QCOMPARE(pixels.name, QStringLiteral("In pixels"));
    QCOMPARE(pixels.name, PrimitiveCalibrationModel::pixelRowName());
    QCOMPARE(pixels.value, 1.0);
    QCOMPARE(pixels.remark, QStringLiteral("Measure images in pixels, this is the default."));
    QCOMPARE(pixels.defaultUnitKey, PrimitiveUnit::pixelKey());
    QVERIFY(pixels.isValid());
    QCOMPARE(checkedRows(session.model), QVector<int>{0});
    QCOMPARE(&PrimitiveCalibrationModel::instance(), &session.model);
}

void tst_PrimitiveCalibrationModel::pixelRowFollowsTheLanguage()
{
    {
        Application application;
        const ContextTranslator translator;
        PrimitiveCalibrationModel& model = PrimitiveCalibrationModel::instance();
        model.appendCalibration(record("A"));
        QCOMPARE(names(model), QStringLiteral("PrimitiveCalibrationModel|In pixels A"));
        QCOMPARE(PrimitiveCalibrationModel::pixelRowName(), model.calibrationAt(0).name);
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString(),
                 QStringLiteral("PrimitiveCalibrationModel|Name"));
    }
    Session next;
    QCOMPARE(names(next.model), QStringLiteral("In pixels A"));
}

void tst_PrimitiveCalibrationModel::cellsShowTheRecord()
{
    Session session;
    session.model.appendCalibration(
        {QStringLiteral("10x"), 1.23456789e-7, QStringLiteral("dry"), QStringLiteral("2_mm")});
    session.model.appendCalibration(record("zero", 0.0));
    const auto text = [&](int row, int column) { return session.model.index(row, column).data(); };
    QVERIFY(!text(1, 0).isValid());
    QCOMPARE(text(1, 1).toString(), QStringLiteral("10x"));
    QCOMPARE(text(1, 2).toString(), QStringLiteral("1.23457e-07"));
    QCOMPARE(text(1, 3).toString(), QStringLiteral("Millimeter (mm)"));
    QCOMPARE(text(1, 4).toString(), QStringLiteral("dry"));
    QCOMPARE(text(0, 3).toString(), QStringLiteral("Pixel (px)"));
    QCOMPARE(text(2, 2).toString(), QStringLiteral("0"));
}

void tst_PrimitiveCalibrationModel::otherRolesAndRowsShowNothing()
{
    Session session;
    QVERIFY(!session.model.index(0, 1).data(Qt::EditRole).isValid());
    QVERIFY(!session.model.index(0, 1).data(Qt::CheckStateRole).isValid());
    QVERIFY(!session.model.index(0, 1).data(Qt::ToolTipRole).isValid());
    QVERIFY(!session.model.data(QModelIndex()).isValid());
}

void tst_PrimitiveCalibrationModel::headersNameColumnsAndCountFromZero()
{
    Session session;
    const auto header = [&](int section, Qt::Orientation orientation) {
        return session.model.headerData(section, orientation).toString();
    };
    const QStringList expected = {QStringLiteral("Using"), QStringLiteral("Name"),
                                  QStringLiteral("Value"), QStringLiteral("Default unit"),
                                  QStringLiteral("Remark")};
    for (int column = 0; column < expected.size(); ++column)
        QCOMPARE(header(column, Qt::Horizontal), expected.at(column));
    QVERIFY(!session.model.headerData(5, Qt::Horizontal).isValid());
    QCOMPARE(header(0, Qt::Vertical), QStringLiteral("0"));
    QCOMPARE(header(7, Qt::Vertical), QStringLiteral("7"));
    QVERIFY(!session.model.headerData(1, Qt::Horizontal, Qt::EditRole).isValid());
}

void tst_PrimitiveCalibrationModel::onlyTheFirstColumnIsCheckable()
{
    Session session;
    const Qt::ItemFlags base = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    QCOMPARE(session.model.index(0, 0).flags(), base | Qt::ItemIsUserCheckable);
    for (int column = 1; column < 5; ++column)
        QCOMPARE(session.model.index(0, column).flags(), base);
}

void tst_PrimitiveCalibrationModel::announcementsFitTheChanges()
{
    Session session;
    FlatProxy proxy;
    proxy.setSourceModel(&session.model);
    const QAbstractItemModelTester tester(&proxy);
    addAandB(session.model);
    QVERIFY(session.model.insertRows(1, 3));
    session.model.checkRow(2);
    QVERIFY(session.model.setData(session.model.index(2, 1), QStringLiteral("C")));
    QVERIFY(session.model.moveDown(2));
    QVERIFY(session.model.removeRows(1, 2));
    QVERIFY(session.model.load(defaultFile(), false));
    QCOMPARE(proxy.rowCount({}), 1);
}

void tst_PrimitiveCalibrationModel::checkMovesToARow()
{
    Session session;
    addAandB(session.model);
    QSignalSpy changed(&session.model, &QAbstractItemModel::dataChanged);
    QSignalSpy checked(&session.model, &PrimitiveCalibrationModel::rowChecked);
    session.model.checkRow(2);
    QCOMPARE(checkedRows(session.model), QVector<int>{2});
    QCOMPARE(checked.size(), 1);
    QCOMPARE(checked.at(0).at(0).toInt(), 2);
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), session.model.index(2, 0));
    QCOMPARE(changed.at(1).at(0).toModelIndex(), session.model.index(0, 0));
}

void tst_PrimitiveCalibrationModel::checkCannotBeTakenOff()
{
    Session session;
    addAandB(session.model);
    QSignalSpy checked(&session.model, &PrimitiveCalibrationModel::rowChecked);
    QSignalSpy changed(&session.model, &QAbstractItemModel::dataChanged);
    QVERIFY(session.model.setData(session.model.index(0, 0), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(checkedRows(session.model), QVector<int>{0});
    QCOMPARE(checked.size() + changed.size(), 0);
    QVERIFY(session.model.setData(session.model.index(1, 0), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(checkedRows(session.model), QVector<int>{1});
    QCOMPARE(checked.size(), 1);
}

void tst_PrimitiveCalibrationModel::checkOfAnotherColumnChangesNothing()
{
    Session session;
    addAandB(session.model);
    QSignalSpy changed(&session.model, &QAbstractItemModel::dataChanged);
    QVERIFY(session.model.setData(session.model.index(1, 1), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(checkedRows(session.model), QVector<int>{0});
    QCOMPARE(session.model.calibrationAt(1).name, QStringLiteral("A"));
    QCOMPARE(changed.size(), 0);
}

void tst_PrimitiveCalibrationModel::editRoleWritesFields()
{
    Session session;
    addAandB(session.model);
    QSignalSpy changed(&session.model, &QAbstractItemModel::dataChanged);
    const QVariant values[] = {QStringLiteral("ignored"), QStringLiteral("C"),
                               QStringLiteral("2.5e-7"), QStringLiteral("4_m"),
                               QStringLiteral("oil")};
    for (int column = 0; column < 5; ++column) {
        QVERIFY(session.model.setData(session.model.index(1, column), values[column]));
        QCOMPARE(changed.last().at(0).toModelIndex(), session.model.index(1, column));
    }
    QCOMPARE(changed.size(), 5);
    const PrimitiveCalibration edited = session.model.calibrationAt(1);
    QCOMPARE(edited.name, QStringLiteral("C"));
    QCOMPARE(edited.value, 2.5e-7);
    QCOMPARE(edited.defaultUnitKey, QStringLiteral("4_m"));
    QCOMPARE(edited.remark, QStringLiteral("oil"));
}

void tst_PrimitiveCalibrationModel::otherRolesAndRowsWriteNothing()
{
    Session session;
    addAandB(session.model);
    QVERIFY(session.model.setData(session.model.index(1, 1), QStringLiteral("C"), Qt::DisplayRole));
    QCOMPARE(session.model.calibrationAt(1).name, QStringLiteral("A"));
    QVERIFY(!session.model.setData(QModelIndex(), QStringLiteral("C")));
    session.model.checkRow(9);
    QCOMPARE(checkedRows(session.model), QVector<int>{0});
}

void tst_PrimitiveCalibrationModel::namesAreFoundWithoutRegardToCase()
{
    Session session;
    session.model.appendCalibration(record("Dry 10x", 1e-6));
    session.model.appendCalibration(record("DRY 10X", 2e-6));
    QCOMPARE(session.model.calibrationByName(QStringLiteral("dry 10X")).value, 1e-6);
    QCOMPARE(session.model.calibrationByName(QStringLiteral("IN PIXELS")).value, 1.0);
}

void tst_PrimitiveCalibrationModel::unknownNameGivesAnInvalidRecord()
{
    Session session;
    QVERIFY(!session.model.calibrationByName(QStringLiteral("nobody")).isValid());
}

void tst_PrimitiveCalibrationModel::nameIsAvailableUnlessEmptyOrTaken()
{
    Session session;
    addAandB(session.model);
    QVERIFY(!session.model.isNameAvailable(QString()));
    QVERIFY(!session.model.isNameAvailable(QStringLiteral("in pixels")));
    QVERIFY(!session.model.isNameAvailable(QStringLiteral("b")));
    QVERIFY(session.model.isNameAvailable(QStringLiteral("C")));
}

void tst_PrimitiveCalibrationModel::pixelRowCannotBeRemoved()
{
    Session session;
    addAandB(session.model);
    QVERIFY(!session.model.removeRows(0, 1));
    QVERIFY(!session.model.removeRows(0, 3));
    QVERIFY(!session.model.removeRows(-1, 1));
    QVERIFY(!session.model.removeRows(1, 3));
    QVERIFY(!session.model.removeRows(3, 1));
    QVERIFY(!session.model.removeRows(1, 0));
    QVERIFY(!session.model.removeRows(1, std::numeric_limits<int>::max()));
    QCOMPARE(names(session.model), QStringLiteral("In pixels A B"));
}

void tst_PrimitiveCalibrationModel::nothingIsInsertedAboveThePixelRow()
{
    Session session;
    QVERIFY(!session.model.insertRows(0, 1));
    QVERIFY(!session.model.insertRows(-1, 1));
    QVERIFY(!session.model.insertRows(2, 1));
    QVERIFY(!session.model.insertRows(1, 0));
    QCOMPARE(session.model.rowCount(), 1);
}

void tst_PrimitiveCalibrationModel::insertedRowsAreDefaultRecords()
{
    Session session;
    addAandB(session.model);
    QSignalSpy inserted(&session.model, &QAbstractItemModel::rowsInserted);
    QVERIFY(session.model.insertRows(2, 2));
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted.at(0).at(1).toInt(), 2);
    QCOMPARE(inserted.at(0).at(2).toInt(), 3);
    QCOMPARE(names(session.model), QStringLiteral("In pixels A   B"));
    QVERIFY(!session.model.calibrationAt(2).isValid());
    QVERIFY(!session.model.calibrationAt(3).isValid());
}

void tst_PrimitiveCalibrationModel::rangesAreRemoved()
{
    Session session;
    addAandB(session.model);
    session.model.appendCalibration(record("C"));
    QSignalSpy removed(&session.model, &QAbstractItemModel::rowsRemoved);
    QVERIFY(session.model.removeRows(1, 2));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(names(session.model), QStringLiteral("In pixels C"));
}

void tst_PrimitiveCalibrationModel::removalLeavesTheCheckAtItsRowNumber()
{
    Session session;
    addAandB(session.model);
    session.model.checkRow(1);
    QSignalSpy checked(&session.model, &PrimitiveCalibrationModel::rowChecked);
    QVERIFY(session.model.removeRows(1, 1));
    QCOMPARE(checkedRows(session.model), QVector<int>{1});
    QCOMPARE(session.model.calibrationAt(1).name, QStringLiteral("B"));
    QVERIFY(session.model.removeRows(1, 1));
    QVERIFY(checkedRows(session.model).isEmpty());
    QCOMPARE(checked.size(), 0);
    session.model.checkRow(0);
    QCOMPARE(checkedRows(session.model), QVector<int>{0});
}

void tst_PrimitiveCalibrationModel::movesStayBelowThePixelRow()
{
    Session session;
    addAandB(session.model);
    QVERIFY(session.model.moveDown(1));
    QCOMPARE(names(session.model), QStringLiteral("In pixels B A"));
    QVERIFY(!session.model.moveUp(1));
    QVERIFY(!session.model.moveUp(3));
    QVERIFY(!session.model.moveDown(2));
    QVERIFY(!session.model.moveDown(0));
    QCOMPARE(names(session.model), QStringLiteral("In pixels B A"));
    QVERIFY(session.model.moveUp(2));
    QCOMPARE(names(session.model), QStringLiteral("In pixels A B"));
}

void tst_PrimitiveCalibrationModel::moveReturnsTheCheckSilently()
{
    Session session;
    addAandB(session.model);
    session.model.checkRow(2);
    QSignalSpy checked(&session.model, &PrimitiveCalibrationModel::rowChecked);
    QSignalSpy reset(&session.model, &QAbstractItemModel::modelReset);
    QVERIFY(session.model.moveUp(2));
    QCOMPARE(checkedRows(session.model), QVector<int>{0});
    QCOMPARE(checked.size(), 0);
    QCOMPARE(reset.size(), 1);
}

QTEST_APPLESS_MAIN(tst_PrimitiveCalibrationModel)
#include "tst_PrimitiveCalibrationModel.moc"
