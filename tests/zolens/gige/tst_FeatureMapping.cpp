#include "FakeBox.h"
#include "ImitatedCamera.h"
#include "gige/FeatureMapping.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <map>

using zolens::FeatureAccess;
using zolens::FeatureMapping;
using zolens::VisionDevice;

namespace {

QByteArray limits(double value, double lowest, double highest)
{
    return "<Value>" + QByteArray::number(value) + "</Value><Min>" + QByteArray::number(lowest) +
           "</Min><Max>" + QByteArray::number(highest) + "</Max>";
}

QByteArray fraction(const char* name, double value, double lowest, double highest,
                    const char* unit = nullptr)
{
    const QByteArray ofUnit = unit ? QByteArray("<Unit>") + unit + "</Unit>" : QByteArray();
    return QByteArray("<Float Name=\"") + name + "\">" + limits(value, lowest, highest) + ofUnit +
           "</Float>";
}

QByteArray whole(const char* name, int value, int lowest, int highest, int step = 1)
{
    return QByteArray("<Integer Name=\"") + name + "\">" + limits(value, lowest, highest) +
           "<Inc>" + QByteArray::number(step) + "</Inc></Integer>";
}

/// Stands at its first entry.
QByteArray list(const char* name, const QByteArrayList& entries)
{
    QByteArray result = QByteArray("<Enumeration Name=\"") + name + "\">";
    for (int i = 0; i < entries.size(); ++i)
        result += "<EnumEntry Name=\"" + entries[i] + "\"><Value>" + QByteArray::number(i) +
                  "</Value></EnumEntry>";
    return result + "<Value>0</Value></Enumeration>";
}

bool isNear(double actual, double expected)
{
    return std::abs(actual - expected) < 1e-3;
}

} // namespace

/// What no picture and no other program is needed for: which features count, and their numbers.
class tst_FeatureMapping final : public QObject
{
    Q_OBJECT

private:
    /// A camera that has these features beside an exposure time and a raw gain.
    void plug(const QByteArray& more)
    {
        QByteArray description = FakeBox::ownDescription();
        description.insert(description.lastIndexOf("</RegisterDescription>"), more);
        auto camera = imitatedCamera(description);
        QVERIFY(camera);
        device = std::make_unique<VisionDevice>(std::move(camera), [] {});
        features = std::make_unique<FeatureAccess>(*device);
        mappings = zolens::findMappings(*features);
    }

    const FeatureMapping* find(tagCMProperty id) const
    {
        const auto found = std::find_if(mappings.begin(), mappings.end(),
                                        [id](const auto& row) { return row.property == id; });
        return found == mappings.end() ? nullptr : &*found;
    }

    std::unique_ptr<VisionDevice> device;
    std::unique_ptr<FeatureAccess> features;
    std::vector<FeatureMapping> mappings;

private slots:
    void cleanup()
    {
        features.reset();
        device.reset();
    }

    void ofSeveralFeaturesThatOfTodayCountsAlone()
    {
        plug(fraction("ExposureTime", 500, 10, 9000) + whole("ExposureTimeRaw", 3, 1, 8) +
             fraction("Gain", 6, 0, 24, "dB") + fraction("GainAbs", 3, 0, 24, "dB") +
             whole("BlackLevelRaw", 4, 0, 15) + fraction("BlackLevelAbs", 8, 0, 200) +
             fraction("ExposureAutoTarget", 40, 0, 100) + whole("AutoTargetValue", 99, 0, 255) +
             whole("Sharpening", 1, 0, 3) + whole("Sharpness", 2, 0, 9));
        const std::map<tagCMProperty, std::string> expected = {
            {CMProperty_ExposureTime, "ExposureTime"},
            {CMProperty_Gain, "Gain"},
            {CMProperty_Brightness, "BlackLevelAbs"},
            {CMProperty_ExposureTarget, "AutoTargetValue"},
            {CMProperty_Sharpness, "Sharpness"}};
        std::map<tagCMProperty, std::string> found;
        for (const FeatureMapping& mapping : mappings)
            found[mapping.property] = mapping.feature;
        QCOMPARE(found, expected);
        QCOMPARE(mappings.size(), expected.size());
    }

    void gainsBecomeHundredthsOfAFactor_data()
    {
        QTest::addColumn<double>("least");
        QTest::addColumn<double>("most");
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<double>("lowest");
        QTest::addColumn<double>("highest");
        QTest::addColumn<double>("ofTwofold");
        // Ten times as much are 20 decibels, twice as much are 6.0206.
        QTest::newRow("factors") << 1.0 << 16.0 << QByteArray() << 100.0 << 1600.0 << 2.0;
        QTest::newRow("decibels") << 0.0 << 40.0 << QByteArray("dB") << 100.0 << 10000.0 << 6.0206;
        QTest::newRow("decibels without a unit")
            << 0.0 << 20.0 << QByteArray() << 100.0 << 1000.0 << 6.0206;
        QTest::newRow("decibels from above zero on")
            << 1.0 << 20.0 << QByteArray("dB") << 112.2018 << 1000.0 << 6.0206;
        QTest::newRow("decibels from below zero on")
            << -6.0 << 18.0 << QByteArray() << 50.1187 << 794.3282 << 6.0206;
    }

    void gainsBecomeHundredthsOfAFactor()
    {
        QFETCH(double, least);
        QFETCH(double, most);
        QFETCH(QByteArray, unit);
        QFETCH(double, lowest);
        QFETCH(double, highest);
        QFETCH(double, ofTwofold);
        plug(fraction("Gain", most, least, most, unit.isEmpty() ? nullptr : unit.constData()));
        const FeatureMapping* gain = find(CMProperty_Gain);
        QVERIFY(gain);
        QVERIFY(isNear(gain->range.lowest, lowest));
        QVERIFY(isNear(gain->range.highest, highest));
        QVERIFY(isNear(gain->range.standard, highest));
        QVERIFY(gain->range.hasUnit);
        QVERIFY(gain->write(*features, 200));
        QVERIFY(isNear(features->number("Gain").value_or(0), ofTwofold));
        QVERIFY(isNear(gain->read(*features).value_or(0), 200));
        for (const double tooLow : {0.0, -5.0}) {
            QVERIFY(gain->write(*features, tooLow));
            QVERIFY(isNear(features->number("Gain").value_or(0), least));
        }
    }

    void numbersHaveStepsInBetween_data()
    {
        QTest::addColumn<QByteArray>("feature");
        QTest::addColumn<double>("lowest");
        QTest::addColumn<double>("highest");
        QTest::addColumn<double>("step");
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("number");
        const auto row = [](const char* name, const QByteArray& feature, double lowest,
                            double highest, double step, double value, double number) {
            QTest::newRow(name) << feature << lowest << highest << step << value << number;
        };
        row("narrow", fraction("Contrast", 0, -1, 1), -100, 100, 1, 33, 0.33);
        row("nearly wide", fraction("Contrast", 0, 0, 99.5), 0, 9950, 1, 1234, 12.34);
        row("wide", fraction("Contrast", 0, 0, 100), 0, 100, 1, 33, 33);
        row("wide on both sides", fraction("Contrast", 0, -50, 50), -50, 50, 1, -7, -7);
        row("whole", whole("Contrast", 0, 0, 3), 0, 3, 1, 2, 2);
        row("whole in steps", whole("Contrast", 0, 0, 60, 4), 0, 60, 4, 12, 12);
    }

    void numbersHaveStepsInBetween()
    {
        QFETCH(QByteArray, feature);
        QFETCH(double, lowest);
        QFETCH(double, highest);
        QFETCH(double, step);
        QFETCH(double, value);
        QFETCH(double, number);
        plug(feature);
        const FeatureMapping* contrast = find(CMProperty_Contrast);
        QVERIFY(contrast);
        QCOMPARE(contrast->range.lowest, lowest);
        QCOMPARE(contrast->range.highest, highest);
        QCOMPARE(contrast->range.step, step);
        QVERIFY(contrast->write(*features, value));
        QVERIFY(isNear(features->number("Contrast").value_or(-999), number));
    }

    void aTargetInPercentIsOneOfGreyLevels()
    {
        plug(whole("AutoExposureTargetGreyValue", 40, 10, 90, 10));
        const FeatureMapping* target = find(CMProperty_ExposureTarget);
        QVERIFY(target);
        // 255 levels are 100 percent.
        QCOMPARE(target->range.lowest, 25.5);
        QCOMPARE(target->range.highest, 229.5);
        QCOMPARE(target->range.step, 25.5);
        QCOMPARE(target->range.standard, 102.0);
        QVERIFY(target->write(*features, 128));
        QCOMPARE(features->number("AutoExposureTargetGreyValue"), std::optional(50.0));
    }

    void takesTheNearestStepWithinTheRange_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("number");
        // The steps are 3, 8, 13 and 18; the range ends between two.
        QTest::newRow("below") << -100.0 << 3.0;
        QTest::newRow("on a step") << 8.0 << 8.0;
        QTest::newRow("nearer to the lower one") << 10.0 << 8.0;
        QTest::newRow("nearer to the upper one") << 11.0 << 13.0;
        QTest::newRow("beyond the last step") << 20.0 << 18.0;
        QTest::newRow("nearer to a step that there is not") << 21.0 << 18.0;
        QTest::newRow("above") << 1e9 << 18.0;
    }

    void takesTheNearestStepWithinTheRange()
    {
        QFETCH(double, value);
        QFETCH(double, number);
        plug(whole("Saturation", 13, 3, 21, 5));
        const FeatureMapping* saturation = find(CMProperty_Saturation);
        QVERIFY(saturation);
        QCOMPARE(saturation->range.standard, 13.0);
        QVERIFY(saturation->write(*features, value));
        QCOMPARE(features->number("Saturation"), std::optional(number));
        QCOMPARE(saturation->read(*features), std::optional(number));
    }

    void setsTheAmplifierThatStandsForAll_data()
    {
        QTest::addColumn<QByteArrayList>("entries");
        QTest::addColumn<QByteArray>("chosen");
        QTest::newRow("all") << QByteArrayList{"Tap1", "DigitalAll", "AnalogAll", "All"}
                             << QByteArray("All");
        QTest::newRow("analog") << QByteArrayList{"Tap1", "DigitalAll", "AnalogAll"}
                                << QByteArray("AnalogAll");
        QTest::newRow("digital") << QByteArrayList{"Tap1", "DigitalAll"}
                                 << QByteArray("DigitalAll");
        QTest::newRow("none") << QByteArrayList{"Tap1", "Tap2"} << QByteArray("Tap1");
    }

    void setsTheAmplifierThatStandsForAll()
    {
        QFETCH(QByteArrayList, entries);
        QFETCH(QByteArray, chosen);
        plug(list("GainSelector", entries) + list("BlackLevelSelector", entries));
        QCOMPARE(features->choice("GainSelector"), std::optional(chosen.toStdString()));
        QCOMPARE(features->choice("BlackLevelSelector"), std::optional(chosen.toStdString()));
    }

    void hasOnlyTheColorsThatCanBeChosen()
    {
        const QByteArray ratio = fraction("BalanceRatio", 1, 0.5, 4);
        plug(ratio + list("BalanceRatioSelector", {"Blue", "Red"}));
        QVERIFY(find(CMProperty_RedGain));
        QVERIFY(!find(CMProperty_GreenGain));
        QVERIFY(find(CMProperty_BlueGain));
        QVERIFY(find(CMProperty_RedGain)->write(*features, 150));
        QCOMPARE(features->choice("BalanceRatioSelector"), std::optional<std::string>("Red"));
        QVERIFY(find(CMProperty_BlueGain)->read(*features));
        QCOMPARE(features->choice("BalanceRatioSelector"), std::optional<std::string>("Blue"));
        cleanup();
        plug(ratio);
        QVERIFY(!find(CMProperty_RedGain) && !find(CMProperty_BlueGain));
    }

    void everyColorHasARangeOfItsOwn()
    {
        plug(list("BalanceRatioSelector", {"Red", "Green", "Blue"}) +
             "<Float Name=\"BalanceRatio\"><Value>1</Value><Min>0.5</Min><pMax>Most</pMax></Float>"
             "<SwissKnife Name=\"Most\"><pVariable Name=\"COLOR\">BalanceRatioSelector</pVariable>"
             "<Formula>2 + COLOR</Formula></SwissKnife>");
        const std::pair<tagCMProperty, double> ranges[] = {
            {CMProperty_RedGain, 200}, {CMProperty_GreenGain, 300}, {CMProperty_BlueGain, 400}};
        for (const auto& [id, highest] : ranges) {
            QVERIFY(find(id));
            QCOMPARE(find(id)->range.lowest, 50.0);
            QCOMPARE(find(id)->range.highest, highest);
        }
    }

    void aLostCameraNeitherTellsNorTakesAnything()
    {
        plug(whole("Hue", 5, 0, 9));
        const FeatureMapping* hue = find(CMProperty_Hue);
        QVERIFY(hue);
        QCOMPARE(hue->read(*features), std::optional(5.0));
        device->giveUp();
        QVERIFY(!hue->read(*features));
        QVERIFY(!hue->write(*features, 3));
        QVERIFY(zolens::findMappings(*features).empty());
    }
};

QTEST_APPLESS_MAIN(tst_FeatureMapping)
#include "tst_FeatureMapping.moc"
