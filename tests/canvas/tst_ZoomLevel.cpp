#include "canvas/ZoomLevel.h"

#include <QtTest>

class tst_ZoomLevel : public QObject
{
    Q_OBJECT

private slots:
    void levelAndScale_data()
    {
        QTest::addColumn<double>("level");
        QTest::addColumn<double>("scale");
        QTest::newRow("lowest") << 0.0 << 0.03125;
        QTest::newRow("quarter") << 150.0 << 0.25;
        QTest::newRow("actual size") << 250.0 << 1.0;
        QTest::newRow("double") << 300.0 << 2.0;
        QTest::newRow("highest") << 500.0 << 32.0;
    }

    void levelAndScale()
    {
        QFETCH(double, level);
        QFETCH(double, scale);
        QCOMPARE(ZoomLevel::toScale(level), scale);
        QCOMPARE(ZoomLevel::ofScale(scale), level);
    }

    void aStepThatPassesActualSizeRestsThere()
    {
        QCOMPARE(ZoomLevel::raised(247.0, 6.0), 250.0);
        QCOMPARE(ZoomLevel::raised(250.0, 6.0), 256.0);
        QCOMPARE(ZoomLevel::lowered(253.0, 200.0), 250.0);
        QCOMPARE(ZoomLevel::lowered(250.0, 6.0), 244.0);
    }

    void aStepThatMeetsActualSizeStaysThere()
    {
        QCOMPARE(ZoomLevel::raised(244.0, 6.0), 250.0);
        QCOMPARE(ZoomLevel::lowered(260.0, 10.0), 250.0);
    }

    void stepsAreHeldAtTheEnds()
    {
        QCOMPARE(ZoomLevel::raised(496.0, 10.0), 500.0);
        QCOMPARE(ZoomLevel::lowered(4.0, 10.0), 0.0);
        QCOMPARE(ZoomLevel::clamped(582.2), 500.0);
        QCOMPARE(ZoomLevel::clamped(-3.0), 0.0);
    }
};

QTEST_APPLESS_MAIN(tst_ZoomLevel)
#include "tst_ZoomLevel.moc"
