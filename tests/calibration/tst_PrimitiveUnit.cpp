#include "calibration/PrimitiveUnit.h"

#include <QMetaMethod>
#include <QtTest>

class tst_PrimitiveUnit final : public QObject
{
    Q_OBJECT

private slots:
    void knownUnitsHaveNameSymbolAndFactor_data();
    void knownUnitsHaveNameSymbolAndFactor();
    void listsGoFromNanometreToThou();
    void pixelStandsOutsideTheLists();
    void unknownKeysHaveFactorOneAndNoTexts();
    void listsAreSlotsOfTheMetaObject();
};

void tst_PrimitiveUnit::knownUnitsHaveNameSymbolAndFactor_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<double>("factor");
    const auto row = [](const char* key, const char* name, const char* symbol, double factor) {
        QTest::newRow(key) << QString::fromUtf8(key) << QString::fromUtf8(name)
                           << QString::fromUtf8(symbol) << factor;
    };
    row("0_nm", "Nanometer (nm)", "nm", 1e-9);
    row("1_\xc2\xb5m", "Micrometer (\xc2\xb5m)", "\xc2\xb5m", 1e-6);
    row("2_mm", "Millimeter (mm)", "mm", 0.001);
    row("3_cm", "Centimeter (cm)", "cm", 0.01);
    row("4_m", "Meter (m)", "m", 1.0);
    row("5_in", "Inch (in)", "in", 0.0254);
    row("6_mil", "thou (mil)", "mil", 0.0254 / 1000.0);
    row("px_key", "Pixel (px)", "px", 1.0);
}

void tst_PrimitiveUnit::knownUnitsHaveNameSymbolAndFactor()
{
    QFETCH(QString, key);
    QTEST(PrimitiveUnit::fullName(key), "name");
    QTEST(PrimitiveUnit::symbol(key), "symbol");
    QTEST(PrimitiveUnit::factor(key), "factor");
}

void tst_PrimitiveUnit::listsGoFromNanometreToThou()
{
    const QStringList keys = {QStringLiteral("0_nm"), QStringLiteral("1_\u00b5m"),
                              QStringLiteral("2_mm"), QStringLiteral("3_cm"),
                              QStringLiteral("4_m"),  QStringLiteral("5_in"),
                              QStringLiteral("6_mil")};
    QCOMPARE(QStringList(PrimitiveUnit::fullNameList().keys()), keys);
    QCOMPARE(QStringList(PrimitiveUnit::factorList().keys()), keys);
    QCOMPARE(PrimitiveUnit::fullNameList().first(), QStringLiteral("Nanometer (nm)"));
    QCOMPARE(PrimitiveUnit::fullNameList().last(), QStringLiteral("thou (mil)"));
}

void tst_PrimitiveUnit::pixelStandsOutsideTheLists()
{
    QCOMPARE(PrimitiveUnit::pixelKey(), QStringLiteral("px_key"));
    QCOMPARE(PrimitiveUnit::pixelSymbol(), QStringLiteral("px"));
    QVERIFY(!PrimitiveUnit::fullNameList().contains(PrimitiveUnit::pixelKey()));
    QVERIFY(!PrimitiveUnit::factorList().contains(PrimitiveUnit::pixelKey()));
}

void tst_PrimitiveUnit::unknownKeysHaveFactorOneAndNoTexts()
{
    // The last one has the Greek letter in place of the micro sign.
    for (const QString& key :
         {QString(), QStringLiteral("7_mile"), QStringLiteral("mm"), QStringLiteral("1_\u03bcm")}) {
        QCOMPARE(PrimitiveUnit::factor(key), 1.0);
        QVERIFY(PrimitiveUnit::fullName(key).isEmpty());
        QVERIFY(PrimitiveUnit::symbol(key).isEmpty());
    }
}

void tst_PrimitiveUnit::listsAreSlotsOfTheMetaObject()
{
    const QMetaObject& meta = PrimitiveUnit::staticMetaObject;
    const int slot = meta.indexOfSlot("factorList()");
    QVERIFY(slot >= 0);
    QVERIFY(meta.indexOfSlot("fullNameList()") >= 0);
    PrimitiveUnit unit;
    QMap<QString, double> factors;
    QVERIFY(meta.method(slot).invokeOnGadget(
        &unit, QReturnArgument<QMap<QString, double>>("QMap<QString,double>", factors)));
    QCOMPARE(factors, PrimitiveUnit::factorList());
}

QTEST_MAIN(tst_PrimitiveUnit)
#include "tst_PrimitiveUnit.moc"
