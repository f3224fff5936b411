#include "device/PictureSizes.h"

#include <QtTest>

using Sizes = std::vector<QSize>;

class tst_PictureSizes final : public QObject
{
    Q_OBJECT

private slots:
    void offersCommonSizesThatTheDeviceTakes_data()
    {
        QTest::addColumn<QSize>("least");
        QTest::addColumn<QSize>("most");
        QTest::addColumn<QSize>("step");
        QTest::addColumn<Sizes>("expected");
        QTest::newRow("between the ends")
            << QSize(640, 480) << QSize(1280, 960) << QSize(1, 1)
            << Sizes{{640, 480}, {800, 600}, {1024, 768}, {1280, 720}, {1280, 960}};
        // Widths of 320, 640, 960, 1280 and heights of 240, 480, 720, 960.
        QTest::newRow("in its steps") << QSize(320, 240) << QSize(1280, 960) << QSize(320, 240)
                                      << Sizes{{320, 240}, {640, 480}, {1280, 720}, {1280, 960}};
        // Odd numbers only.
        QTest::newRow("in steps that miss all")
            << QSize(1, 1) << QSize(5000, 5000) << QSize(2, 2) << Sizes{};
        QTest::newRow("a step of nothing is one of one")
            << QSize(300, 200) << QSize(640, 480) << QSize(0, 0)
            << Sizes{{320, 240}, {640, 360}, {640, 480}};
        QTest::newRow("none that fits")
            << QSize(16, 16) << QSize(160, 120) << QSize(1, 1) << Sizes{};
    }

    void offersCommonSizesThatTheDeviceTakes()
    {
        QFETCH(QSize, least);
        QFETCH(QSize, most);
        QFETCH(QSize, step);
        QFETCH(Sizes, expected);
        QCOMPARE(zolens::commonSizesOn({least, most, step}), expected);
    }

    void sortsByAreaThenByWidthAndLeavesOutRepetitions()
    {
        Sizes sizes = {{640, 480}, {200, 300}, {640, 480}, {320, 240}, {300, 200}, {320, 240}};
        zolens::sortByArea(&sizes);
        QCOMPARE(sizes, (Sizes{{200, 300}, {300, 200}, {320, 240}, {640, 480}}));
    }

    void sortsSizesWhoseAreaExceedsAnInt()
    {
        Sizes sizes = {{65536, 65536}, {1, 1}, {50000, 50000}};
        zolens::sortByArea(&sizes);
        QCOMPARE(sizes, (Sizes{{1, 1}, {50000, 50000}, {65536, 65536}}));
    }
};

QTEST_APPLESS_MAIN(tst_PictureSizes)
#include "tst_PictureSizes.moc"
