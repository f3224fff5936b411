#include <zolens/CWUVCFilter.h>

#include <QtTest>

class tst_CWUVCFilter final : public QObject
{
    Q_OBJECT

private slots:
    void keepsRowsInTheOrderAdded()
    {
        CWUVCFilter filter;
        filter.addItem({0x0547, 0x4d88, "Model A", 0});
        filter.addItem({0, 0, {}, 2});

        QCOMPARE(filter.items().size(), std::size_t{2});
        QCOMPARE(filter.items()[0].vendorId, std::uint16_t{0x0547});
        QCOMPARE(filter.items()[0].productId, std::uint16_t{0x4d88});
        QCOMPARE(filter.items()[0].model, std::string("Model A"));
        QCOMPARE(filter.items()[0].type, std::int32_t{0});
        QVERIFY(filter.items()[1].model.empty());
        QCOMPARE(filter.items()[1].type, std::int32_t{2});
    }

    void clearLeavesNoRows()
    {
        CWUVCFilter filter;
        filter.addItem({1, 2, "Model", 0});
        filter.clear();
        QVERIFY(filter.items().empty());
    }
};

QTEST_APPLESS_MAIN(tst_CWUVCFilter)
#include "tst_CWUVCFilter.moc"
