#include "UsbTest.h"
#include "support/CameraValues.h"

#include <QtTest>

using namespace cameravalues;

/// What of a camera's settings reaches a USB camera through the kernel's driver.
class tst_KernelUsbControls final : public UsbTest
{
    Q_OBJECT

public:
    tst_KernelUsbControls() : UsbTest(UsbBench::small) {}

private slots:
    void exposureGoesFromAutomaticToManualToTime();
    void anExposureTimeWaitsForTheManualMode();
    void whiteBalanceReachesTheCamera();
    void aTemperatureWaitsForTheManualMode();
    void powerFrequencyReachesTheCamera();
    void holdsValuesInTheirRange_data();
    void holdsValuesInTheirRange();
    void goesBackToDefaults();
    void theLastOfManyValuesCounts();
    void setsValuesWhilePicturesCome();
};

void tst_KernelUsbControls::exposureGoesFromAutomaticToManualToTime()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    camera.setAutoExposure(false);
    QCOMPARE(camera.setProperty(CMProperty_ExposureTime, 20000), 0);
    QVERIFY(bench->usb.hears(QStringLiteral("SET exposure_time_absolute 200")));
    QCOMPARE(bench->usb.heard(QStringLiteral("SET ")),
             QStringList({QStringLiteral("auto_exposure 1"),
                          QStringLiteral("exposure_time_absolute 200")}));
    QCOMPARE(valueOf(camera, CMProperty_ExposureTime), 20000.0);
    camera.setAutoExposure(true);
    QVERIFY(bench->usb.hears(QStringLiteral("SET auto_exposure 8")));
}

void tst_KernelUsbControls::anExposureTimeWaitsForTheManualMode()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    QVERIFY(camera.setProperty(CMProperty_ExposureTime, 20000) != 0);
    QCOMPARE(valueOf(camera, CMProperty_ExposureTime), 15700.0);
    camera.setAutoExposure(false);
    QCOMPARE(camera.setProperty(CMProperty_ExposureTime, 20000), 0);
    camera.setAutoExposure(true);
    QVERIFY(camera.setProperty(CMProperty_ExposureTime, 30000) != 0);
    QVERIFY(viewer->sees(3, UsbBench::small));
    QCOMPARE(bench->usb.heard(QStringLiteral("SET exposure_time_absolute ")),
             QStringList(QStringLiteral("200")));
    QCOMPARE(bench->usb.heard(QStringLiteral("REFUSED")), QStringList());
}

void tst_KernelUsbControls::whiteBalanceReachesTheCamera()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    std::vector<int> modes;
    camera.whiteBalanceModes(&modes);
    QCOMPARE(modes, (std::vector<int>{CWWhiteBalance_Auto, CWWhiteBalance_Manual}));
    QCOMPARE(camera.whiteBalanceMode(), int(CWWhiteBalance_Auto));
    camera.setWhiteBalanceMode(CWWhiteBalance_Manual);
    QCOMPARE(camera.whiteBalanceMode(), int(CWWhiteBalance_Manual));
    // Between two of the camera's steps of 10.
    QCOMPARE(camera.setProperty(CMProperty_ColorTemperature, 5004), 0);
    QCOMPARE(valueOf(camera, CMProperty_ColorTemperature), 5000.0);
    camera.setWhiteBalanceMode(CWWhiteBalance_Auto);
    QCOMPARE(camera.whiteBalanceMode(), int(CWWhiteBalance_Auto));
    QVERIFY(bench->usb.hears(QStringLiteral("SET white_balance_automatic 1")));
    QCOMPARE(bench->usb.heard(QStringLiteral("SET ")),
             QStringList({QStringLiteral("white_balance_automatic 0"),
                          QStringLiteral("white_balance_temperature 5000"),
                          QStringLiteral("white_balance_automatic 1")}));
}

void tst_KernelUsbControls::aTemperatureWaitsForTheManualMode()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    QVERIFY(camera.setProperty(CMProperty_ColorTemperature, 3000) != 0);
    QCOMPARE(valueOf(camera, CMProperty_ColorTemperature), 4600.0);
    QVERIFY(viewer->sees(3, UsbBench::small));
    QCOMPARE(bench->usb.heard(QStringLiteral("SET ")), QStringList());
}

void tst_KernelUsbControls::powerFrequencyReachesTheCamera()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    std::vector<int> values;
    camera.powerFrequencies(&values);
    QCOMPARE(values, (std::vector<int>{0, 1, 2}));
    QCOMPARE(camera.powerFrequency(), 1);
    camera.setPowerFrequency(2);
    QCOMPARE(camera.powerFrequency(), 2);
    camera.setPowerFrequency(7);
    QCOMPARE(camera.powerFrequency(), 2);
    QVERIFY(bench->usb.hears(QStringLiteral("SET power_line_frequency 2")));
    QCOMPARE(bench->usb.heard(QStringLiteral("SET ")),
             QStringList(QStringLiteral("power_line_frequency 2")));
}

void tst_KernelUsbControls::holdsValuesInTheirRange_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("lowest");
    QTest::addColumn<int>("highest");
    const auto row = [](tagCMProperty id, const char* control, int lowest, int highest) {
        QTest::newRow(control) << int(id) << QString::fromLatin1(control) << lowest << highest;
    };
    row(CMProperty_Brightness, "brightness", -64, 64);
    row(CMProperty_Contrast, "contrast", 0, 64);
    row(CMProperty_Hue, "hue", -40, 40);
    row(CMProperty_Saturation, "saturation", 0, 128);
    row(CMProperty_Gamma, "gamma", 72, 500);
    row(CMProperty_Sharpness, "sharpness", 0, 6);
    row(CMProperty_Gain, "gain", 0, 100);
}

void tst_KernelUsbControls::holdsValuesInTheirRange()
{
    QFETCH(int, property);
    QFETCH(QString, control);
    QFETCH(int, lowest);
    QFETCH(int, highest);
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    const auto id = tagCMProperty(property);
    const Range range = rangeOf(camera, id);
    QCOMPARE(range.lowest, double(lowest));
    QCOMPARE(range.highest, double(highest));
    QCOMPARE(range.step, 1.0);
    const int middle = (lowest + highest) / 2 + 1;
    for (const double value : {-1e12, 1e12, double(middle)})
        QCOMPARE(camera.setProperty(id, value), 0);
    QCOMPARE(valueOf(camera, id), double(middle));
    const QString sent = QStringLiteral("SET %1 ").arg(control);
    QVERIFY(bench->usb.hears(sent + QString::number(middle)));
    QCOMPARE(bench->usb.heard(sent), QStringList({QString::number(lowest), QString::number(highest),
                                                  QString::number(middle)}));
}

void tst_KernelUsbControls::goesBackToDefaults()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    QCOMPARE(camera.setProperty(CMProperty_Gamma, 300), 0);
    QCOMPARE(camera.resetProperty(CMProperty_Gamma), 100.0);
    QCOMPARE(valueOf(camera, CMProperty_Gamma), 100.0);
    QVERIFY(bench->usb.hears(QStringLiteral("SET gamma 100")));
}

void tst_KernelUsbControls::theLastOfManyValuesCounts()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    for (int i = 0; i < 100; ++i)
        viewer->device().setProperty(CMProperty_Brightness, i % 60);
    viewer->device().setProperty(CMProperty_Brightness, 61);
    QVERIFY(bench->usb.hears(QStringLiteral("SET brightness 61")));
    QCOMPARE(bench->usb.heard(QStringLiteral("SET brightness ")).last(), QStringLiteral("61"));
    QCOMPARE(valueOf(viewer->device(), CMProperty_Brightness), 61.0);
}

void tst_KernelUsbControls::setsValuesWhilePicturesCome()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    QVERIFY(viewer->sees(1, UsbBench::small));
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(viewer->device().setProperty(CMProperty_Contrast, i), 0);
        QVERIFY(viewer->sees(1, UsbBench::small));
    }
    QCOMPARE(viewer->damagedFrames(), quint64(0));
}

QTEST_GUILESS_MAIN(tst_KernelUsbControls)
#include "tst_KernelUsbControls.moc"
