#include "BoxCamera.h"
#include "support/CameraValues.h"

#include <QtTest>

#include <cmath>

namespace {

// The registers of camera-features.xml.
constexpr quint32 exposureAuto = 0x2000;
constexpr quint32 blueRatio = 0x2018;
constexpr quint32 gain = 0x2020;
constexpr quint32 gammaEnable = 0x2028;
constexpr quint32 blackLevel = 0x202c;
constexpr quint32 saturation = 0x2030;
constexpr quint32 target = 0x2038;
constexpr quint32 frameRateEnable = 0x203c;
constexpr quint32 blackLevelAuto = 0x2040;
constexpr quint32 gammaSelector = 0x2044;

QByteArray renamed(QByteArray description, const QByteArray& before, const QByteArray& after)
{
    return description.replace("Name=\"" + before + '"', "Name=\"" + after + '"')
        .replace('>' + before + '<', '>' + after + '<');
}

} // namespace

/// The names that one and the same feature has with cameras of several ages and makers.
class tst_VisionNames final : public QObject, protected BoxCamera
{
    Q_OBJECT

private slots:
    void cleanup() { close(); }

    void knowsFeaturesThatAreWholeNumbers_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<int>("id");
        QTest::addColumn<quint32>("place");
        QTest::addColumn<bool>("hasUnit");
        const auto row = [](const char* before, const char* after, tagCMProperty id, quint32 place,
                            bool hasUnit = true) {
            QTest::newRow(after) << QByteArray(before) << QByteArray(after) << int(id) << place
                                 << hasUnit;
        };
        constexpr quint32 exposure = ARV_FAKE_CAMERA_REGISTER_EXPOSURE_TIME_US;
        row("ExposureTimeAbs", "ExposureTimeAbs", CMProperty_ExposureTime, exposure);
        row("ExposureTimeAbs", "ExposureTime", CMProperty_ExposureTime, exposure);
        row("ExposureTimeAbs", "ExposureTimeRaw", CMProperty_ExposureTime, exposure, false);
        row("BlackLevelRaw", "BlackLevelRaw", CMProperty_Brightness, blackLevel);
        row("BlackLevelRaw", "BlackLevelAbs", CMProperty_Brightness, blackLevel);
        row("BlackLevelRaw", "BlackLevel", CMProperty_Brightness, blackLevel);
        row("Saturation", "Contrast", CMProperty_Contrast, saturation);
        row("Saturation", "Sharpness", CMProperty_Sharpness, saturation);
        row("Saturation", "Sharpening", CMProperty_Sharpness, saturation);
        row("Saturation", "AutoTargetValue", CMProperty_ExposureTarget, saturation);
    }

    void knowsFeaturesThatAreWholeNumbers()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(int, id);
        QFETCH(quint32, place);
        QFETCH(bool, hasUnit);
        QByteArray description = FakeBox::fullDescription();
        if (id == CMProperty_ExposureTarget)
            description = renamed(description, "AutoTargetBrightness", "Other");
        startBox(renamed(description, before, after));
        open();
        camera->setAutoExposure(false);
        const auto property = tagCMProperty(id);
        QVERIFY(camera->isPropertySupported(property));
        QCOMPARE(camera->hasUnit(property), hasUnit);
        QCOMPARE(camera->setProperty(property, 120), 0);
        QCOMPARE(box->registerValue(place), std::optional(120U));
    }

    void knowsFeaturesWithFractions_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<int>("id");
        QTest::addColumn<quint32>("place");
        QTest::addColumn<double>("value");
        QTest::addColumn<float>("number");
        const auto row = [](const char* before, const char* after, tagCMProperty id, quint32 place,
                            double value, float number) {
            QTest::newRow(after) << QByteArray(before) << QByteArray(after) << int(id) << place
                                 << value << number;
        };
        row("Gain", "Gain", CMProperty_Gain, gain, 1000, 20.0F);
        row("Gain", "GainAbs", CMProperty_Gain, gain, 1000, 20.0F);
        row("BalanceRatio", "BalanceRatio", CMProperty_BlueGain, blueRatio, 225, 2.25F);
        row("BalanceRatio", "BalanceRatioAbs", CMProperty_BlueGain, blueRatio, 225, 2.25F);
        row("BalanceRatio", "BalanceRatioRaw", CMProperty_BlueGain, blueRatio, 225, 2.25F);
        row("AutoTargetBrightness", "AutoTargetBrightness", CMProperty_ExposureTarget, target, 51,
            0.2F);
        row("AutoTargetBrightness", "ExposureAutoTarget", CMProperty_ExposureTarget, target, 1.275,
            0.5F);
        row("AutoTargetBrightness", "AutoExposureTargetGreyValue", CMProperty_ExposureTarget,
            target, 1.275, 0.5F);
    }

    void knowsFeaturesWithFractions()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(int, id);
        QFETCH(quint32, place);
        QFETCH(double, value);
        QFETCH(float, number);
        startBox(renamed(FakeBox::fullDescription(), before, after));
        open();
        camera->setAutoExposure(false);
        camera->setWhiteBalanceMode(CWWhiteBalance_Manual);
        QCOMPARE(camera->setProperty(tagCMProperty(id), value), 0);
        QVERIFY(std::abs(box->registerNumber(place).value_or(0) - number) < 1e-3F);
    }

    void switchesOnWhatItSets_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("of today") << QByteArray("GammaEnable");
        QTest::newRow("of old") << QByteArray("GammaEnabled");
    }

    void switchesOnWhatItSets()
    {
        QFETCH(QByteArray, name);
        startBox(renamed(FakeBox::fullDescription(), "GammaEnable", name));
        set("GammaSelector", 0);
        open();
        QCOMPARE(box->registerValue(gammaEnable), std::optional(0U));
        QCOMPARE(camera->setProperty(CMProperty_Gamma, 150), 0);
        QCOMPARE(box->registerValue(gammaEnable), std::optional(1U));
        // Beside a fixed curve there may be the one that the number describes.
        QCOMPARE(box->registerValue(gammaSelector), std::optional(1U));
    }

    void takesAFeatureFromTheAutomaticThatHoldsIt()
    {
        startBox(renamed(FakeBox::fullDescription(), "BlackLevelRaw", "BlackLevel"));
        set("BlackLevelAuto", 2);
        open();
        QCOMPARE(box->registerValue(blackLevelAuto), std::optional(2U));
        QCOMPARE(camera->setProperty(CMProperty_Brightness, 12), 0);
        QCOMPARE(box->registerValue(blackLevelAuto), std::optional(0U));
        QCOMPARE(box->registerValue(blackLevel), std::optional(12U));
    }

    void runsAsFastAsTheBoxCan_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("of today") << QByteArray("AcquisitionFrameRateEnable");
        QTest::newRow("of old") << QByteArray("AcquisitionFrameRateEnabled");
    }

    void runsAsFastAsTheBoxCan()
    {
        QFETCH(QByteArray, name);
        startBox(renamed(FakeBox::fullDescription(), "AcquisitionFrameRateEnable", name));
        set("AcquisitionFrameRateEnableRegister", 1);
        QCOMPARE(box->registerValue(frameRateEnable), std::optional(1U));
        open();
        QCOMPARE(box->registerValue(frameRateEnable), std::optional(0U));
    }

    void exposesOnceWhereThatIsAllTheAutomatic()
    {
        const QByteArray always = "<EnumEntry Name=\"Continuous\"><Value>2</Value></EnumEntry>";
        QByteArray description = FakeBox::fullDescription();
        const int place = description.indexOf(always, description.indexOf("\"ExposureAuto\""));
        startBox(description.remove(place, always.size()));
        open();
        camera->setAutoExposure(true);
        QCOMPARE(box->registerValue(exposureAuto), std::optional(1U));
        camera->setAutoExposure(false);
        QCOMPARE(box->registerValue(exposureAuto), std::optional(0U));
    }

    void choosesAmongPackedFormats_data()
    {
        QTest::addColumn<QByteArrayList>("names");
        QTest::addColumn<quint32>("first");
        QTest::addColumn<std::vector<int>>("numbers");
        QTest::newRow("both ages")
            << QByteArrayList{"BayerRG12Packed", "BayerRG10Packed", "BayerRG10p", "Mono10Packed"}
            << 0x010a0058U << std::vector<int>{1, 7};
        QTest::newRow("only old") << QByteArrayList{"Mono10Packed", "YUV422Packed",
                                                    "BayerRG12Packed", "BayerRG10Packed"}
                                  << 0x010c002bU << std::vector<int>{1, 5, 7};
        QTest::newRow("only luma and colors")
            << QByteArrayList{"Mono10Packed", "YUV422_8", "YUV422Packed"} << 0x02100032U
            << std::vector<int>{5, 7};
        QTest::newRow("some that are unknown")
            << QByteArrayList{"Depth", "YUV422Packed"} << 0x0210001fU << std::vector<int>{5};
    }

    void choosesAmongPackedFormats()
    {
        QFETCH(QByteArrayList, names);
        QFETCH(quint32, first);
        QFETCH(std::vector<int>, numbers);
        const QMap<QByteArray, quint32> codes = {
            {"BayerRG12Packed", 0x010c002b}, {"BayerRG10Packed", 0x010c0027},
            {"BayerRG10p", 0x010a0058},      {"Mono10Packed", 0x010c0004},
            {"YUV422Packed", 0x0210001f},    {"YUV422_8", 0x02100032},
            {"Depth", 0x011000b6},
        };
        QByteArray description = FakeBox::withFormats(FakeBox::ownDescription(), {});
        QByteArray entries;
        for (const QByteArray& name : names)
            entries += "<EnumEntry Name=\"" + name + "\"><Value>" +
                       QByteArray::number(codes[name]) + "</Value></EnumEntry>";
        startBox(description.insert(description.indexOf("<pValue>PixelFormatRegister"), entries));
        open();
        QCOMPARE(cameravalues::formatsOf(*camera), numbers);
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_PIXEL_FORMAT), std::optional(first));
    }
};

QTEST_GUILESS_MAIN(tst_VisionNames)
#include "tst_VisionNames.moc"
