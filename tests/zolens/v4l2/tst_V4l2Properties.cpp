#include "support/CameraValues.h"
#include "support/fakev4l2/CameraBench.h"
#include "v4l2/CameraControls.h"
#include "v4l2/V4l2Device.h"
#include "zolens/FrameCollector.h"

#include <zolens/MyCamera.h>

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace std::chrono_literals;
using namespace cameravalues;
using zolens::V4l2Camera;

namespace {

using Write = std::pair<quint32, int>;
using Writes = std::vector<Write>;

constexpr quint32 exposureMode = V4L2_CID_EXPOSURE_AUTO;
constexpr quint32 exposureTime = V4L2_CID_EXPOSURE_ABSOLUTE;
constexpr quint32 temperature = V4L2_CID_WHITE_BALANCE_TEMPERATURE;

} // namespace

class tst_V4l2Properties final : public QObject
{
    Q_OBJECT

private:
    void open()
    {
        bench.plug(0, device, "1234", "5678");
        camera = std::make_unique<V4l2Camera>(bench.address(), false);
        QVERIFY(camera->start(&sink));
    }

    CameraBench bench;
    FrameCollector sink;
    std::shared_ptr<FakeCamera> device;
    std::unique_ptr<V4l2Camera> camera;

private slots:
    void init() { device = CameraBench::webcam(); }
    void cleanup() { camera.reset(); }

    void tellsWhatIsSupported_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<bool>("supported");
        QTest::newRow("brightness") << 0 << true;
        QTest::newRow("contrast") << 1 << true;
        QTest::newRow("hue") << 2 << false;
        QTest::newRow("gamma") << 4 << false;
        QTest::newRow("gain") << 6 << true;
        QTest::newRow("exposure target") << 11 << false;
        QTest::newRow("exposure time") << 12 << true;
        QTest::newRow("red gain") << 13 << false;
        QTest::newRow("green gain") << 14 << false;
        QTest::newRow("temperature") << 16 << true;
        QTest::newRow("color mode") << 18 << true;
        QTest::newRow("de-noise") << 19 << true;
        QTest::newRow("no property") << 30 << false;
    }

    void tellsWhatIsSupported()
    {
        QFETCH(int, id);
        QFETCH(bool, supported);
        open();
        const auto property = tagCMProperty(id);
        QCOMPARE(camera->isPropertySupported(property), supported);
        double value = -5.0;
        QCOMPARE(camera->getProperty(property, &value) == 0, supported);
        QCOMPARE(value == -5.0, !supported);
        QVERIFY(supported || camera->setProperty(property, 1) != 0);
        QVERIFY(supported || camera->resetProperty(property) == 0.0);
    }

    void exposureTimeCountsInMicroseconds()
    {
        open();
        const Range range = rangeOf(*camera, CMProperty_ExposureTime);
        QCOMPARE(range.lowest, 100.0);
        QCOMPARE(range.highest, 500000.0);
        QCOMPARE(range.step, 100.0);
        QCOMPARE(valueOf(*camera, CMProperty_ExposureTime), 15700.0);
        QCOMPARE(camera->resetProperty(CMProperty_ExposureTime), 15700.0);
    }

    void labelsShowUnitsOnlyWhereTheDeviceTellsThem()
    {
        open();
        MyCamera opened;
        opened.camera = std::move(camera);
        const auto label = [&opened](tagCMProperty id) {
            return opened.getFormatedProperty(id, false);
        };
        QCOMPARE(label(CMProperty_ExposureTime), QStringLiteral("15.7 ms"));
        QCOMPARE(label(CMProperty_Gain), QStringLiteral("10"));
        QCOMPARE(label(CMProperty_Brightness), QStringLiteral("0"));
    }

    void linesAndSensorStepsAreNumbersOfTheDevice()
    {
        device->controls = {};
        device->controls.addInteger(V4L2_CID_EXPOSURE, 4, 1100, 800);
        device->controls.addInteger(V4L2_CID_ANALOGUE_GAIN, 16, 248, 64);
        open();
        QVERIFY(!camera->hasUnit(CMProperty_ExposureTime));
        QVERIFY(!camera->hasUnit(CMProperty_Gain));
        MyCamera opened;
        opened.camera = std::move(camera);
        QCOMPARE(opened.getFormatedProperty(CMProperty_ExposureTime, false), QStringLiteral("800"));
        QCOMPARE(opened.getFormatedProperty(CMProperty_Gain, false), QStringLiteral("64"));
    }

    void writesTheExposureTimeOnlyAfterAutomaticIsOff()
    {
        open();
        QVERIFY(camera->setProperty(CMProperty_ExposureTime, 20000) != 0);
        QVERIFY(device->writes().empty());
        camera->setAutoExposure(false);
        QCOMPARE(camera->setProperty(CMProperty_ExposureTime, 20000), 0);
        QCOMPARE(device->writes(), (Writes{{exposureMode, 1}, {exposureTime, 200}}));
        QCOMPARE(valueOf(*camera, CMProperty_ExposureTime), 20000.0);
        camera->setAutoExposure(true);
        QCOMPARE(device->value(exposureMode), 3);
        QVERIFY(camera->setProperty(CMProperty_ExposureTime, 30000) != 0);
    }

    void waitsForManualExposureAlsoWhereTheDriverWouldTakeTheTime()
    {
        device->controls.closesAutomatic = false;
        open();
        QVERIFY(camera->setProperty(CMProperty_ExposureTime, 20000) != 0);
        QVERIFY(device->writes().empty());
        camera->setAutoExposure(false);
        QCOMPARE(camera->setProperty(CMProperty_ExposureTime, 20000), 0);
        QCOMPARE(device->writes(), (Writes{{exposureMode, 1}, {exposureTime, 200}}));
    }

    void takesAValueOnceAnotherProgramLetsGoOfTheControl()
    {
        device->controls.setFlags(V4L2_CID_GAIN, V4L2_CTRL_FLAG_GRABBED);
        open();
        QVERIFY(camera->setProperty(CMProperty_Gain, 20) != 0);
        QVERIFY(device->writes().empty());
        device->controls.setFlags(V4L2_CID_GAIN, 0);
        QCOMPARE(camera->setProperty(CMProperty_Gain, 20), 0);
        QCOMPARE(device->writes(), (Writes{{V4L2_CID_GAIN, 20}}));
    }

    void takesAValueOnceAnotherProgramEndsTheAutomaticMode()
    {
        open();
        QVERIFY(camera->setProperty(CMProperty_ExposureTime, 20000) != 0);
        QVERIFY(camera->setProperty(CMProperty_ColorTemperature, 3000) != 0);
        device->controls.choose(exposureMode, V4L2_EXPOSURE_MANUAL);
        device->controls.choose(V4L2_CID_AUTO_WHITE_BALANCE, 0);
        QCOMPARE(camera->setProperty(CMProperty_ExposureTime, 20000), 0);
        QCOMPARE(camera->setProperty(CMProperty_ColorTemperature, 3000), 0);
        QCOMPARE(device->writes(), (Writes{{exposureTime, 200}, {temperature, 3000}}));
    }

    void waitsForNoExposureBeyondAMinute_data()
    {
        QTest::addColumn<int>("units");
        QTest::addColumn<qint64>("microseconds");
        QTest::newRow("long") << 300000 << qint64(30000000);
        QTest::newRow("too long") << 700000 << qint64(60000000);
        QTest::newRow("rubbish") << std::numeric_limits<int>::max() << qint64(60000000);
        QTest::newRow("negative") << -5 << qint64(0);
    }

    void waitsForNoExposureBeyondAMinute()
    {
        QFETCH(int, units);
        QFETCH(qint64, microseconds);
        device->controls = {};
        device->controls.addInteger(exposureTime, std::min(units, 1),
                                    std::numeric_limits<int>::max(), units);
        bench.plug(0, device, "1234", "5678");
        const auto node = std::make_shared<zolens::V4l2Device>(bench.system, bench.node(0));
        const zolens::CameraControls controls(node);
        QCOMPARE(qint64(controls.exposureTime().count()), microseconds);
    }

    void readsAllAgainAfterAWrite()
    {
        open();
        const int before = bench.system->calls(VIDIOC_G_CTRL);
        QCOMPARE(camera->setProperty(CMProperty_Brightness, 7), 0);
        // The webcam has eight controls.
        QVERIFY(bench.system->calls(VIDIOC_G_CTRL) >= before + 8);
    }

    void automaticExposureInItsForms_data()
    {
        QTest::addColumn<std::vector<int>>("menu");
        QTest::addColumn<int>("on");
        QTest::addColumn<int>("off");
        QTest::newRow("aperture priority") << std::vector<int>{1, 3} << 3 << 1;
        QTest::newRow("fully automatic") << std::vector<int>{0, 1} << 0 << 1;
        QTest::newRow("both") << std::vector<int>{0, 1, 2, 3} << 3 << 1;
        QTest::newRow("shutter priority for manual") << std::vector<int>{0, 2} << 0 << 2;
    }

    void automaticExposureInItsForms()
    {
        QFETCH(std::vector<int>, menu);
        QFETCH(int, on);
        QFETCH(int, off);
        device->controls = {};
        device->controls.addMenu(exposureMode, menu, menu.back());
        open();
        camera->setAutoExposure(true);
        QCOMPARE(device->value(exposureMode), on);
        camera->setAutoExposure(false);
        QCOMPARE(device->value(exposureMode), off);
    }

    void automaticGainGoesWithTheExposure()
    {
        device->controls = {};
        device->controls.addBoolean(V4L2_CID_AUTOGAIN, false);
        open();
        camera->setAutoExposure(true);
        QCOMPARE(device->value(V4L2_CID_AUTOGAIN), 1);
        camera->setAutoExposure(false);
        QCOMPARE(device->value(V4L2_CID_AUTOGAIN), 0);
    }

    void holdsValuesAtTheEnds_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("held");
        QTest::newRow("inside") << 12.4 << 12;
        QTest::newRow("above") << 5000.0 << 64;
        QTest::newRow("below") << -1e300 << -64;
        QTest::newRow("endless") << std::numeric_limits<double>::infinity() << 64;
    }

    void holdsValuesAtTheEnds()
    {
        QFETCH(double, value);
        QFETCH(int, held);
        open();
        QCOMPARE(camera->setProperty(CMProperty_Brightness, value), 0);
        QCOMPARE(device->value(V4L2_CID_BRIGHTNESS), held);
        QCOMPARE(valueOf(*camera, CMProperty_Brightness), double(held));
    }

    void refusesWhatIsNoNumber()
    {
        open();
        const double none = std::nan("");
        QVERIFY(camera->setProperty(CMProperty_Brightness, none) != 0);
        QVERIFY(camera->setProperty(CMProperty_Denoise, none) != 0);
        QVERIFY(device->writes().empty());
    }

    void keepsToTheStepsOfAControl()
    {
        open();
        camera->setWhiteBalanceMode(CWWhiteBalance_Manual);
        QCOMPARE(camera->setProperty(CMProperty_ColorTemperature, 5003), 0);
        QCOMPARE(valueOf(*camera, CMProperty_ColorTemperature), 5000.0);
    }

    void resetsToTheDefault()
    {
        open();
        camera->setProperty(CMProperty_Contrast, 60);
        QCOMPARE(camera->resetProperty(CMProperty_Contrast), 32.0);
        QCOMPARE(device->value(V4L2_CID_CONTRAST), 32);
        camera->setProperty(CMProperty_Denoise, 500);
        QCOMPARE(valueOf(*camera, CMProperty_Denoise), 100.0);
        QCOMPARE(camera->resetProperty(CMProperty_Denoise), 0.0);
        QCOMPARE(valueOf(*camera, CMProperty_Denoise), 0.0);
    }

    void listsTheColorModes()
    {
        open();
        std::vector<int> values;
        camera->propertyValues(&values, CMProperty_ColorMode);
        QCOMPARE(values, (std::vector<int>{0, 1, 2}));
        camera->propertyValues(&values, CMProperty_Brightness);
        QVERIFY(values.empty());
    }

    void balancesWhite()
    {
        open();
        std::vector<int> modes;
        camera->whiteBalanceModes(&modes);
        QCOMPARE(modes, (std::vector<int>{0, 1}));
        QCOMPARE(camera->whiteBalanceMode(), 0);
        QVERIFY(camera->setProperty(CMProperty_ColorTemperature, 3000) != 0);
        camera->setWhiteBalanceMode(CWWhiteBalance_Manual);
        QCOMPARE(camera->whiteBalanceMode(), 1);
        QCOMPARE(camera->setProperty(CMProperty_ColorTemperature, 3000), 0);
        camera->setWhiteBalanceMode(CWWhiteBalance_OnePush);
        QCOMPARE(camera->whiteBalanceMode(), 1);
        camera->setWhiteBalanceMode(CWWhiteBalance_Auto);
        QCOMPARE(camera->whiteBalanceMode(), 0);
    }

    void balancesWhiteOnce()
    {
        device->controls.add({V4L2_CID_DO_WHITE_BALANCE, V4L2_CTRL_TYPE_BUTTON, 0, 0, 0, 0, 0, {}});
        device->controls.addInteger(V4L2_CID_RED_BALANCE, 0, 255, 128);
        device->controls.addInteger(V4L2_CID_BLUE_BALANCE, 0, 255, 128);
        open();
        std::vector<int> modes;
        camera->whiteBalanceModes(&modes);
        QCOMPARE(modes, (std::vector<int>{0, 1, 2}));
        camera->setWhiteBalanceMode(CWWhiteBalance_OnePush);
        QCOMPARE(device->writes(),
                 (Writes{{V4L2_CID_AUTO_WHITE_BALANCE, 0}, {V4L2_CID_DO_WHITE_BALANCE, 0}}));
        QCOMPARE(camera->whiteBalanceMode(), 1);
        QCOMPARE(camera->setProperty(CMProperty_RedGain, 200), 0);
        QCOMPARE(camera->setProperty(CMProperty_BlueGain, 100), 0);
        QVERIFY(!camera->isPropertySupported(CMProperty_GreenGain));
        QCOMPARE(device->value(V4L2_CID_RED_BALANCE), 200);
        QCOMPARE(device->value(V4L2_CID_BLUE_BALANCE), 100);
    }

    void knowsThePowerLine()
    {
        open();
        std::vector<int> values;
        camera->powerFrequencies(&values);
        QCOMPARE(values, (std::vector<int>{0, 1, 2}));
        QCOMPARE(camera->powerFrequency(), 1);
        camera->setPowerFrequency(2);
        QCOMPARE(camera->powerFrequency(), 2);
        camera->setPowerFrequency(7);
        QCOMPARE(camera->powerFrequency(), 2);
    }

    void aDeviceWithoutControlsStillShowsPictures()
    {
        device->controls = {};
        open();
        QVERIFY(sink.waitForFrames(2, 5s));
        std::vector<int> list{1};
        camera->powerFrequencies(&list);
        QVERIFY(list.empty());
        camera->whiteBalanceModes(&list);
        QVERIFY(list.empty());
        camera->setAutoExposure(true);
        QVERIFY(device->writes().empty());
    }

    void leavesOutControlsThatAreNoNumbers()
    {
        device->controls = {};
        device->controls.add({V4L2_CID_BRIGHTNESS, V4L2_CTRL_TYPE_STRING, 0, 9, 1, 0, 0, {}});
        device->controls.add({V4L2_CID_CONTRAST,
                              V4L2_CTRL_TYPE_INTEGER,
                              0,
                              9,
                              1,
                              0,
                              0,
                              {},
                              V4L2_CTRL_FLAG_DISABLED});
        device->controls.add(
            {V4L2_CID_GAIN, V4L2_CTRL_TYPE_INTEGER, 0, 9, 1, 0, 0, {}, V4L2_CTRL_FLAG_READ_ONLY});
        open();
        QVERIFY(!camera->isPropertySupported(CMProperty_Brightness));
        QVERIFY(!camera->isPropertySupported(CMProperty_Contrast));
        QVERIFY(camera->isPropertySupported(CMProperty_Gain));
        QVERIFY(camera->setProperty(CMProperty_Gain, 5) != 0);
    }

    void aFailingControlIsNoSuccess()
    {
        open();
        bench.system->fail(VIDIOC_S_CTRL, EIO);
        QVERIFY(camera->setProperty(CMProperty_Brightness, 3) != 0);
        bench.system->fail(VIDIOC_G_CTRL, EIO);
        double value = -7.0;
        QVERIFY(camera->getProperty(CMProperty_Brightness, &value) != 0);
        QCOMPARE(value, -7.0);
        QCOMPARE(camera->setProperty(CMProperty_Brightness, 3), 0);
    }
};

QTEST_GUILESS_MAIN(tst_V4l2Properties)
#include "tst_V4l2Properties.moc"
