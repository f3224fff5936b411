#include "camera/DeviceFilter.h"

#include <QtTest>

#include <algorithm>
#include <set>
#include <tuple>

namespace {

template <typename Predicate>
long countRows(Predicate matches)
{
    const auto& rows = deviceFilterRows();
    return std::count_if(rows.begin(), rows.end(), matches);
}

bool matchesAnyDevice(const CWUVCFilterItem& row)
{
    return row.vendorId == 0 && row.productId == 0;
}

} // namespace

class tst_DeviceFilter final : public QObject
{
    Q_OBJECT

private slots:
    void tableHasNineteenRows();
    void typesAreSpreadOverTheRows();
    void namedRowsNameOneDeviceEach();
    void everyDeviceClassHasARowForAnyDevice();
    void namedRowsComeBeforeTheWildcards();
    void rowsAreDistinct();
};

void tst_DeviceFilter::tableHasNineteenRows()
{
    QCOMPARE(deviceFilterRows().size(), std::size_t(19));
    QCOMPARE(countRows([](const auto& row) { return !row.model.empty(); }), 13L);
    QCOMPARE(countRows([](const auto& row) { return row.model.empty(); }), 6L);
}

void tst_DeviceFilter::typesAreSpreadOverTheRows()
{
    QCOMPARE(countRows([](const auto& row) { return row.type == 0; }), 16L);
    for (int type : {1, 2, 3})
        QCOMPARE(countRows([type](const auto& row) { return row.type == type; }), 1L);
}

void tst_DeviceFilter::namedRowsNameOneDeviceEach()
{
    for (const CWUVCFilterItem& row : deviceFilterRows()) {
        if (row.model.empty())
            continue;
        QVERIFY2(row.vendorId != 0 && row.productId != 0, row.model.c_str());
        QCOMPARE(row.type, 0);
    }
}

void tst_DeviceFilter::everyDeviceClassHasARowForAnyDevice()
{
    for (int type : {0, 1, 2, 3}) {
        QCOMPARE(countRows([type](const auto& row) {
                     return row.type == type && matchesAnyDevice(row) && row.model.empty();
                 }),
                 1L);
    }
}

void tst_DeviceFilter::namedRowsComeBeforeTheWildcards()
{
    const auto& rows = deviceFilterRows();
    const auto named = [](const CWUVCFilterItem& row) { return !row.model.empty(); };
    QVERIFY(std::is_partitioned(rows.begin(), rows.end(), named));
    // A row for any device would hide the ones of its class that follow it.
    const auto narrow = [](const CWUVCFilterItem& row) { return !matchesAnyDevice(row); };
    QVERIFY(std::is_partitioned(rows.begin(), rows.end(), narrow));
}

void tst_DeviceFilter::rowsAreDistinct()
{
    std::set<std::tuple<int, int, int>> ids;
    std::set<std::string> models;
    for (const CWUVCFilterItem& row : deviceFilterRows()) {
        QVERIFY(ids.emplace(row.vendorId, row.productId, row.type).second);
        if (!row.model.empty())
            QVERIFY2(models.insert(row.model).second, row.model.c_str());
    }
}

QTEST_MAIN(tst_DeviceFilter)
#include "tst_DeviceFilter.moc"
