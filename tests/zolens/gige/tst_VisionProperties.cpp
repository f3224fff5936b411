#include "BoxCamera.h"
#include "gige/VisionControls.h"
#include "gige/VisionDevice.h"
#include "support/CameraValues.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace cameravalues;

namespace {

// The registers of camera-features.xml.
constexpr quint32 exposureAuto = 0x2000;
constexpr quint32 balanceAuto = 0x2004;
constexpr quint32 redRatio = 0x2010;
constexpr quint32 greenRatio = 0x2014;
constexpr quint32 blueRatio = 0x2018;
constexpr quint32 gain = 0x2020;
constexpr quint32 gammaNumber = 0x2024;
constexpr quint32 gammaEnable = 0x2028;
constexpr quint32 blackLevel = 0x202c;
constexpr quint32 saturation = 0x2030;
constexpr quint32 hue = 0x2034;
constexpr quint32 target = 0x2038;

constexpr quint32 off = 0;
constexpr quint32 once = 1;
constexpr quint32 continuous = 2;

// The fake camera's own numbering.
constexpr quint32 ownGainOff = 1;
constexpr quint32 ownGainContinuous = 2;

} // namespace

class tst_VisionProperties final : public QObject, protected BoxCamera
{
    Q_OBJECT

private:
    void setManual()
    {
        camera->setAutoExposure(false);
        camera->setWhiteBalanceMode(CWWhiteBalance_Manual);
    }

private slots:
    void cleanup() { close(); }

    void tellsWhatIsSupported_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<bool>("ofAPlainBox");
        QTest::addColumn<bool>("ofAFullBox");
        QTest::newRow("brightness") << 0 << false << true;
        QTest::newRow("contrast") << 1 << false << false;
        QTest::newRow("hue") << 2 << false << true;
        QTest::newRow("saturation") << 3 << false << true;
        QTest::newRow("gamma") << 4 << false << true;
        QTest::newRow("sharpness") << 5 << false << false;
        QTest::newRow("gain") << 6 << true << true;
        QTest::newRow("exposure target") << 11 << false << true;
        QTest::newRow("exposure time") << 12 << true << true;
        QTest::newRow("red gain") << 13 << false << true;
        QTest::newRow("green gain") << 14 << false << true;
        QTest::newRow("blue gain") << 15 << false << true;
        QTest::newRow("temperature") << 16 << false << false;
        QTest::newRow("color mode") << 18 << true << true;
        QTest::newRow("de-noise") << 19 << true << true;
        QTest::newRow("no property") << 30 << false << false;
    }

    void tellsWhatIsSupported()
    {
        QFETCH(int, id);
        const auto property = tagCMProperty(id);
        for (const bool full : {false, true}) {
            QFETCH(bool, ofAPlainBox);
            QFETCH(bool, ofAFullBox);
            const bool supported = full ? ofAFullBox : ofAPlainBox;
            open(full ? FakeBox::fullDescription() : QByteArray());
            QCOMPARE(camera->isPropertySupported(property), supported);
            double value = -5.0;
            QCOMPARE(camera->getProperty(property, &value) == 0, supported);
            QCOMPARE(value == -5.0, !supported);
            QVERIFY(supported || camera->setProperty(property, 1) != 0);
            QVERIFY(supported || camera->resetProperty(property) == 0.0);
            cleanup();
        }
    }

    void setsTheExposureTime()
    {
        open({});
        QCOMPARE(rangeOf(*camera, CMProperty_ExposureTime).lowest, 10.0);
        QCOMPARE(rangeOf(*camera, CMProperty_ExposureTime).highest, 10000000.0);
        QCOMPARE(camera->setProperty(CMProperty_ExposureTime, 12345), 0);
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_EXPOSURE_TIME_US),
                 std::optional(12345U));
        QCOMPARE(valueOf(*camera, CMProperty_ExposureTime), 12345.0);
    }

    void holdsValuesAtTheEnds_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<quint32>("held");
        QTest::newRow("above") << 1e9 << 10000000U;
        QTest::newRow("below") << -3.0 << 10U;
        QTest::newRow("endless") << std::numeric_limits<double>::infinity() << 10000000U;
    }

    void holdsValuesAtTheEnds()
    {
        QFETCH(double, value);
        QFETCH(quint32, held);
        open({});
        QCOMPARE(camera->setProperty(CMProperty_ExposureTime, value), 0);
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_EXPOSURE_TIME_US),
                 std::optional(held));
        QVERIFY(camera->setProperty(CMProperty_ExposureTime, std::nan("")) != 0);
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_EXPOSURE_TIME_US),
                 std::optional(held));
    }

    void leavesOutFeaturesWithoutSensibleLimits_data()
    {
        QTest::addColumn<QByteArray>("lowest");
        QTest::addColumn<QByteArray>("highest");
        QTest::newRow("turned round") << QByteArray("25") << QByteArray("24");
        QTest::newRow("no number") << QByteArray("nan") << QByteArray("24");
        QTest::newRow("no number above") << QByteArray("0") << QByteArray("nan");
        QTest::newRow("endless") << QByteArray("0") << QByteArray("inf");
        QTest::newRow("huge") << QByteArray("0") << QByteArray("1e300");
        QTest::newRow("beyond integers as a factor") << QByteArray("0") << QByteArray("160");
        QTest::newRow("endless as a factor") << QByteArray("0") << QByteArray("100000");
    }

    void leavesOutFeaturesWithoutSensibleLimits()
    {
        QFETCH(QByteArray, lowest);
        QFETCH(QByteArray, highest);
        QByteArray description = FakeBox::fullDescription();
        const QByteArray limits = "<Min>0</Min>\n  <Max>24</Max>";
        QCOMPARE(description.count(limits), 1);
        open(description.replace(limits, "<Min>" + lowest + "</Min><Max>" + highest + "</Max>"));
        // The next best is the number of steps that the same camera has.
        QVERIFY(!camera->hasUnit(CMProperty_Gain));
        QCOMPARE(rangeOf(*camera, CMProperty_Gain).highest, 10.0);
    }

    void leavesOutFeaturesWithoutANumber()
    {
        startBox(FakeBox::fullDescription());
        set("Gain", std::numeric_limits<double>::quiet_NaN());
        set("Gamma", std::numeric_limits<double>::infinity());
        open();
        QVERIFY(!camera->hasUnit(CMProperty_Gain));
        QVERIFY(!camera->isPropertySupported(CMProperty_Gamma));
        QVERIFY(camera->isPropertySupported(CMProperty_Hue));
    }

    void awaitsNoLongerExposureThanTheBoxCanMake()
    {
        startBox({});
        set("ExposureTimeAbs", 2e9);
        zolens::AravisPointer<ArvCamera> own(arv_camera_new(qPrintable(box->address()), nullptr));
        const auto device = std::make_shared<zolens::VisionDevice>(std::move(own), [] {});
        zolens::VisionControls controls;
        controls.attach(device);
        QCOMPARE(controls.read(CMProperty_ExposureTime), std::optional(2e9));
        QCOMPARE(controls.exposureTime().count(), std::chrono::microseconds::rep(10000000));
    }

    void takesExposureTimesBeyondIntegers()
    {
        constexpr double largest = std::numeric_limits<int>::max();
        QByteArray description = FakeBox::ownDescription();
        open(description.replace("<Max>10000000.0</Max>", "<Max>4294967295</Max>"));
        QCOMPARE(rangeOf(*camera, CMProperty_ExposureTime).lowest, 10.0);
        QCOMPARE(rangeOf(*camera, CMProperty_ExposureTime).highest, largest);
        QCOMPARE(camera->setProperty(CMProperty_ExposureTime, 1e10), 0);
        QCOMPARE(valueOf(*camera, CMProperty_ExposureTime), largest);
        QCOMPARE(camera->setProperty(CMProperty_ExposureTime, 20000), 0);
    }

    void leavesARawGainAsTheNumberThatItIs()
    {
        open({});
        QVERIFY(!camera->hasUnit(CMProperty_Gain));
        QVERIFY(camera->hasUnit(CMProperty_ExposureTime));
        QCOMPARE(rangeOf(*camera, CMProperty_Gain).lowest, 0.0);
        QCOMPARE(rangeOf(*camera, CMProperty_Gain).highest, 10.0);
        QCOMPARE(camera->setProperty(CMProperty_Gain, 7), 0);
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_GAIN_RAW), std::optional(7U));
        QCOMPARE(valueOf(*camera, CMProperty_Gain), 7.0);
    }

    void turnsDecibelsIntoFactors()
    {
        open(FakeBox::fullDescription());
        setManual();
        QVERIFY(camera->hasUnit(CMProperty_Gain));
        QCOMPARE(rangeOf(*camera, CMProperty_Gain).lowest, 100.0);
        QVERIFY(std::abs(rangeOf(*camera, CMProperty_Gain).highest - 1584.893) < 0.01); // 24 dB
        QCOMPARE(camera->setProperty(CMProperty_Gain, 200), 0);
        QVERIFY(std::abs(box->registerNumber(gain).value_or(0) - 6.0206F) < 0.001F);
        QVERIFY(std::abs(valueOf(*camera, CMProperty_Gain) - 200.0) < 0.01);
    }

    void takesNoExposureWhileTheBoxChoosesIt()
    {
        open(FakeBox::fullDescription());
        camera->setAutoExposure(true);
        QCOMPARE(box->registerValue(exposureAuto), std::optional(continuous));
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_GAIN_MODE),
                 std::optional(ownGainContinuous));
        QVERIFY(camera->setProperty(CMProperty_ExposureTime, 777) != 0);
        QVERIFY(camera->setProperty(CMProperty_Gain, 300) != 0);
        camera->setAutoExposure(false);
        QCOMPARE(box->registerValue(exposureAuto), std::optional(off));
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_GAIN_MODE), std::optional(ownGainOff));
        QCOMPARE(camera->setProperty(CMProperty_ExposureTime, 777), 0);
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_EXPOSURE_TIME_US),
                 std::optional(777U));
        QCOMPARE(camera->setProperty(CMProperty_Gain, 300), 0);
    }

    void balancesWhite()
    {
        open(FakeBox::fullDescription());
        std::vector<int> modes;
        camera->whiteBalanceModes(&modes);
        QCOMPARE(modes, (std::vector<int>{0, 1, 2}));
        camera->setWhiteBalanceMode(CWWhiteBalance_Auto);
        QCOMPARE(box->registerValue(balanceAuto), std::optional(continuous));
        QCOMPARE(camera->whiteBalanceMode(), 0);
        QVERIFY(camera->setProperty(CMProperty_RedGain, 150) != 0);
        camera->setWhiteBalanceMode(CWWhiteBalance_OnePush);
        QCOMPARE(box->registerValue(balanceAuto), std::optional(once));
        QCOMPARE(camera->whiteBalanceMode(), 1);
        camera->setWhiteBalanceMode(CWWhiteBalance_Manual);
        QCOMPARE(box->registerValue(balanceAuto), std::optional(off));
        QCOMPARE(camera->whiteBalanceMode(), 1);
        camera->setWhiteBalanceMode(7);
        QCOMPARE(box->registerValue(balanceAuto), std::optional(off));
    }

    void setsTheGainOfEachColor()
    {
        open(FakeBox::fullDescription());
        setManual();
        QCOMPARE(camera->setProperty(CMProperty_RedGain, 150), 0);
        QCOMPARE(camera->setProperty(CMProperty_BlueGain, 225), 0);
        QCOMPARE(camera->setProperty(CMProperty_GreenGain, 100), 0);
        QCOMPARE(box->registerNumber(redRatio), std::optional(1.5F));
        QCOMPARE(box->registerNumber(greenRatio), std::optional(1.0F));
        QCOMPARE(box->registerNumber(blueRatio), std::optional(2.25F));
        QCOMPARE(valueOf(*camera, CMProperty_RedGain), 150.0);
        QCOMPARE(valueOf(*camera, CMProperty_BlueGain), 225.0);
        QCOMPARE(rangeOf(*camera, CMProperty_RedGain).lowest, 25.0);
        QCOMPARE(rangeOf(*camera, CMProperty_RedGain).highest, 800.0);
    }

    void aPlainBoxHasNoWhiteBalance()
    {
        open({});
        std::vector<int> list{1};
        camera->whiteBalanceModes(&list);
        QVERIFY(list.empty());
        camera->powerFrequencies(&list);
        QVERIFY(list.empty());
    }

    void setsTheColors()
    {
        open(FakeBox::fullDescription());
        QCOMPARE(camera->setProperty(CMProperty_Gamma, 180), 0);
        QVERIFY(std::abs(box->registerNumber(gammaNumber).value_or(0) - 1.8F) < 1e-6F);
        QCOMPARE(box->registerValue(gammaEnable), std::optional(1U));
        QCOMPARE(camera->setProperty(CMProperty_Brightness, 12), 0);
        QCOMPARE(box->registerValue(blackLevel), std::optional(12U));
        QCOMPARE(camera->setProperty(CMProperty_Hue, -90), 0);
        QCOMPARE(box->registerValue(hue), std::optional(quint32(-90)));
        QCOMPARE(valueOf(*camera, CMProperty_Hue), -90.0);
        QCOMPARE(camera->setProperty(CMProperty_ExposureTarget, 51), 0);
        QVERIFY(std::abs(box->registerNumber(target).value_or(0) - 0.2F) < 1e-6F);
        QCOMPARE(rangeOf(*camera, CMProperty_ExposureTarget).highest, 255.0);
    }

    void keepsToTheStepsOfAFeature()
    {
        open(FakeBox::fullDescription());
        QCOMPARE(camera->setProperty(CMProperty_Saturation, 103), 0);
        QCOMPARE(box->registerValue(saturation), std::optional(105U));
        QCOMPARE(valueOf(*camera, CMProperty_Saturation), 105.0);
    }

    void resetsToWhatTheBoxHadAtFirst()
    {
        open({});
        const double first = valueOf(*camera, CMProperty_ExposureTime);
        QCOMPARE(first, 10000.0);
        QCOMPARE(camera->setProperty(CMProperty_ExposureTime, 500), 0);
        QCOMPARE(camera->resetProperty(CMProperty_ExposureTime), first);
        QCOMPARE(valueOf(*camera, CMProperty_ExposureTime), first);
    }

    void choosesColorModesAndDenoise()
    {
        open({});
        std::vector<int> values;
        camera->propertyValues(&values, CMProperty_ColorMode);
        QCOMPARE(values, (std::vector<int>{0, 1, 2}));
        QCOMPARE(camera->setProperty(CMProperty_ColorMode, 1), 0);
        QCOMPARE(valueOf(*camera, CMProperty_ColorMode), 1.0);
        QCOMPARE(camera->setProperty(CMProperty_Denoise, 500), 0);
        QCOMPARE(valueOf(*camera, CMProperty_Denoise), 100.0);
    }
};

QTEST_GUILESS_MAIN(tst_VisionProperties)
#include "tst_VisionProperties.moc"
