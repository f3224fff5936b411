#include "calibration/PrimitiveCalibration.h"
#include "calibration/PrimitiveUnit.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <limits>

namespace {

const QString micrometre = QStringLiteral("1_\u00b5m");

PrimitiveCalibration micrometrePerPixel()
{
    return {QStringLiteral("10x"), 1e-6, QStringLiteral("objective"), micrometre};
}

} // namespace

class tst_PrimitiveCalibration final : public QObject
{
    Q_OBJECT

private slots:
    void defaultRecordIsEmptyAndInvalid();
    void validityNeedsNameValueAndUnit_data();
    void validityNeedsNameValueAndUnit();
    void lengthsComeOutInTheDisplayUnit();
    void areasComeOutInTheSquareOfTheDisplayUnit();
    void withoutValueOrUnitPixelsPassUnchanged_data();
    void withoutValueOrUnitPixelsPassUnchanged();
    void unknownUnitGivesMetres();
    void pixelRecordGivesPixels();
    void lengthInAUnitBecomesMetres();
    void jsonHasTheFourKeys();
    void jsonKeepsEveryDigit();
    void missingOrMistypedJsonReadsAsEmpty();
};

void tst_PrimitiveCalibration::defaultRecordIsEmptyAndInvalid()
{
    const PrimitiveCalibration record;
    QVERIFY(record.name.isEmpty());
    QCOMPARE(record.value, 0.0);
    QVERIFY(record.remark.isEmpty());
    QVERIFY(record.defaultUnitKey.isEmpty());
    QVERIFY(!record.isValid());
}

void tst_PrimitiveCalibration::validityNeedsNameValueAndUnit_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<bool>("valid");
    const QString name = QStringLiteral("10x");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("complete") << name << 1e-6 << micrometre << true;
    QTest::newRow("pixel row") << name << 1.0 << PrimitiveUnit::pixelKey() << true;
    QTest::newRow("unit unknown to the table") << name << 1e-6 << QStringLiteral("9_ly") << true;
    QTest::newRow("no name") << QString() << 1e-6 << micrometre << false;
    QTest::newRow("no unit") << name << 1e-6 << QString() << false;
    QTest::newRow("zero value") << name << 0.0 << micrometre << false;
    QTest::newRow("negative value") << name << -1e-6 << micrometre << false;
    QTest::newRow("value not a number") << name << nan << micrometre << false;
}

void tst_PrimitiveCalibration::validityNeedsNameValueAndUnit()
{
    QFETCH(QString, name);
    QFETCH(double, value);
    QFETCH(QString, unit);
    QTEST(PrimitiveCalibration(name, value, QString(), unit).isValid(), "valid");
}

void tst_PrimitiveCalibration::lengthsComeOutInTheDisplayUnit()
{
    const PrimitiveCalibration record = micrometrePerPixel();
    QCOMPARE(record.lengthToUnit(100.0, micrometre), 100.0);
    QCOMPARE(record.lengthToUnit(100.0, QStringLiteral("2_mm")), 0.1);
    QCOMPARE(record.lengthToUnit(100.0, QStringLiteral("0_nm")), 100000.0);
    QCOMPARE(record.lengthToUnit(100.0, QStringLiteral("6_mil")), 500.0 / 127.0);
}

void tst_PrimitiveCalibration::areasComeOutInTheSquareOfTheDisplayUnit()
{
    const PrimitiveCalibration record = micrometrePerPixel();
    QCOMPARE(record.areaToUnit(10000.0, micrometre), 10000.0);
    QCOMPARE(record.areaToUnit(10000.0, QStringLiteral("2_mm")), 0.01);
}

void tst_PrimitiveCalibration::withoutValueOrUnitPixelsPassUnchanged_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("unit");
    QTest::newRow("zero value") << 0.0 << micrometre;
    QTest::newRow("negative value") << -2.0 << micrometre;
    QTest::newRow("value not a number") << std::numeric_limits<double>::quiet_NaN() << micrometre;
    QTest::newRow("no unit") << 1e-6 << QString();
}

void tst_PrimitiveCalibration::withoutValueOrUnitPixelsPassUnchanged()
{
    QFETCH(double, value);
    QFETCH(QString, unit);
    const PrimitiveCalibration record(QStringLiteral("a"), value, QString(), micrometre);
    QCOMPARE(record.lengthToUnit(12.5, unit), 12.5);
    QCOMPARE(record.areaToUnit(12.5, unit), 12.5);
}

void tst_PrimitiveCalibration::unknownUnitGivesMetres()
{
    QCOMPARE(micrometrePerPixel().lengthToUnit(100.0, QStringLiteral("9_ly")), 1e-4);
    QCOMPARE(micrometrePerPixel().areaToUnit(100.0, QStringLiteral("9_ly")), 1e-10);
}

void tst_PrimitiveCalibration::pixelRecordGivesPixels()
{
    const PrimitiveCalibration pixels(QStringLiteral("p"), 1.0, QString(),
                                      PrimitiveUnit::pixelKey());
    QCOMPARE(pixels.lengthToUnit(37.25, PrimitiveUnit::pixelKey()), 37.25);
    QCOMPARE(pixels.areaToUnit(37.25, PrimitiveUnit::pixelKey()), 37.25);
}

void tst_PrimitiveCalibration::lengthInAUnitBecomesMetres()
{
    QCOMPARE(lengthToMetres(250.0, micrometre), 0.00025);
    QCOMPARE(lengthToMetres(2.0, QStringLiteral("5_in")), 0.0508);
    QCOMPARE(lengthToMetres(-3.0, QStringLiteral("4_m")), -3.0);
    QCOMPARE(lengthToMetres(3.0, QString()), 3.0);
}

void tst_PrimitiveCalibration::jsonHasTheFourKeys()
{
    const QByteArray expected =
        "{\"default_unit_key\":\"1_\xc2\xb5m\",\"name\":\"10x\",\"remark\":\"objective\","
        "\"value\":0.25}";
    PrimitiveCalibration record = micrometrePerPixel();
    record.value = 0.25;
    QCOMPARE(QJsonDocument(record.toJson()).toJson(QJsonDocument::Compact), expected);
}

void tst_PrimitiveCalibration::jsonKeepsEveryDigit()
{
    PrimitiveCalibration record = micrometrePerPixel();
    record.value = 1.0 / 3.0 * 1e-6;
    const QByteArray text = QJsonDocument(record.toJson()).toJson();
    const auto read = PrimitiveCalibration::fromJson(QJsonDocument::fromJson(text).object());
    QVERIFY(read.value == record.value);
    QCOMPARE(read.name, record.name);
    QCOMPARE(read.remark, record.remark);
    QCOMPARE(read.defaultUnitKey, record.defaultUnitKey);
}

void tst_PrimitiveCalibration::missingOrMistypedJsonReadsAsEmpty()
{
    const auto nothing = PrimitiveCalibration::fromJson({});
    QVERIFY(nothing.name.isEmpty());
    QCOMPARE(nothing.value, 0.0);
    const auto wrong = PrimitiveCalibration::fromJson(
        {{QStringLiteral("name"), 5}, {QStringLiteral("value"), QStringLiteral("7")}});
    QVERIFY(wrong.name.isEmpty());
    QCOMPARE(wrong.value, 0.0);
    QVERIFY(!wrong.isValid());
}

QTEST_MAIN(tst_PrimitiveCalibration)
#include "tst_PrimitiveCalibration.moc"
