#include "PropertyText.h"

#include <QtTest>

using zolens::PropertyText;

class tst_PropertyText final : public QObject
{
    Q_OBJECT

private slots:
    void textsHaveTheirUnits_data()
    {
        QTest::addColumn<int>("property");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        const int time = CMProperty_ExposureTime;
        QTest::newRow("microseconds") << time << 50.0 << QStringLiteral("50 µs");
        QTest::newRow("below a millisecond") << time << 999.0 << QStringLiteral("999 µs");
        QTest::newRow("rounded up") << time << 999.7 << QStringLiteral("1.00 ms");
        QTest::newRow("milliseconds") << time << 8333.0 << QStringLiteral("8.33 ms");
        QTest::newRow("tens") << time << 12500.0 << QStringLiteral("12.5 ms");
        QTest::newRow("hundreds") << time << 250000.0 << QStringLiteral("250 ms");
        QTest::newRow("seconds") << time << 2500000.0 << QStringLiteral("2.50 s");
        QTest::newRow("gain") << int{CMProperty_Gain} << 100.0 << QStringLiteral("x 1.0");
        QTest::newRow("high gain") << int{CMProperty_Gain} << 1600.0 << QStringLiteral("x 16.0");
        QTest::newRow("temperature")
            << int{CMProperty_ColorTemperature} << 5000.0 << QStringLiteral("5000 K");
        QTest::newRow("number") << int{CMProperty_Hue} << -12.0 << QStringLiteral("-12");
    }

    void textsHaveTheirUnits()
    {
        QFETCH(int, property);
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(PropertyText::text(static_cast<tagCMProperty>(property), value), text);
    }

    void numbersAreWholeAndHaveNone()
    {
        QCOMPARE(PropertyText::number(1600.0), QStringLiteral("1600"));
        QCOMPARE(PropertyText::number(-0.6), QStringLiteral("-1"));
    }
};

QTEST_APPLESS_MAIN(tst_PropertyText)
#include "tst_PropertyText.moc"
