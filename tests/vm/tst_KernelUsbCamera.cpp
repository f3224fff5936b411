#include "Settings.h"
#include "UsbTest.h"
#include "support/CameraValues.h"
#include "support/fakev4l2/TestPictures.h"

#include <zolens/CWFactory.h>

#include <QDir>
#include <QElapsedTimer>
#include <QtTest>

using namespace cameravalues;

/// What a USB camera gives through the kernel's driver: its entry in the list, pictures, stills.
class tst_KernelUsbCamera final : public UsbTest
{
    Q_OBJECT

public:
    tst_KernelUsbCamera() : UsbTest(UsbBench::large) {}

private slots:
    void isListedOnce();
    void showsItsOwnNameWithoutARowOfItsOwn();
    void twoOfAKindRunSideBySide();
    void knowsFormatsAndSizes();
    void showsEveryMode_data();
    void showsEveryMode();
    void changesModesWhileItRuns();
    void takesTheFastestRate();
    void takesALargerStill();
};

/// Such a camera has a second node, for metadata.
void tst_KernelUsbCamera::isListedOnce()
{
    const QStringList nodes =
        QDir(QStringLiteral("/dev")).entryList({QStringLiteral("video*")}, QDir::System);
    QCOMPARE(nodes.size(), 2);
    const auto devices = bench->listed();
    QCOMPARE(int(devices.size()), 1);
    QCOMPARE(devices.front().name, UsbBench::name());
    QCOMPARE(CWFactory::videoDeviceList().back().type, int(CWDevice_Simulated));
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    QCOMPARE(viewer->camera.deviceInfo().name, UsbBench::name());
}

void tst_KernelUsbCamera::showsItsOwnNameWithoutARowOfItsOwn()
{
    CWUVCFilter wildcard;
    wildcard.addItem({0, 0, {}, CWDevice_Uvc});
    CWFactory::setUVCFilter(&wildcard);
    const auto devices = bench->listed();
    bench->useFilter();
    QCOMPARE(int(devices.size()), 1);
    QCOMPARE(devices.front().name, std::string("Software Camera"));
}

void tst_KernelUsbCamera::twoOfAKindRunSideBySide()
{
    UsbCamera second(1);
    QVERIFY(second.isPlugged());
    QVERIFY(bench->lists(2));
    const auto devices = bench->listed();
    QVERIFY(devices[0].index != devices[1].index);
    Viewer left;
    Viewer right;
    QTRY_VERIFY_WITH_TIMEOUT(left.open(devices[0]), vm::patience);
    QTRY_VERIFY_WITH_TIMEOUT(right.open(devices[1]), vm::patience);
    QVERIFY(left.choose(UsbBench::mjpeg, UsbBench::small) &&
            right.choose(UsbBench::mjpeg, UsbBench::medium));
    QVERIFY(left.sees(5, UsbBench::small));
    QVERIFY(right.sees(5, UsbBench::medium));
    right.camera.close();
    QVERIFY(second.unplug());
    QVERIFY(bench->lists(1));
    QVERIFY(left.sees(5, UsbBench::small));
}

void tst_KernelUsbCamera::knowsFormatsAndSizes()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    QCOMPARE(formatsOf(camera), (std::vector<int>{UsbBench::mjpeg, UsbBench::yuyv}));
    QCOMPARE(camera.previewFormat(), UsbBench::mjpeg);
    QCOMPARE(sizesOf(camera),
             (std::vector<QSize>{UsbBench::small, UsbBench::medium, UsbBench::large}));
    QCOMPARE(previewSizeOf(camera), UsbBench::large);
    QVERIFY(!camera.hasStillCapture());
}

void tst_KernelUsbCamera::showsEveryMode_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QSize>("size");
    // The standard tables are missing from those of 640 x 480 and 1920 x 1080.
    QTest::newRow("MJPEG 640 x 480") << UsbBench::mjpeg << UsbBench::small;
    QTest::newRow("MJPEG 1280 x 720") << UsbBench::mjpeg << UsbBench::medium;
    QTest::newRow("MJPEG 1920 x 1080") << UsbBench::mjpeg << UsbBench::large;
    QTest::newRow("YUYV 320 x 240") << UsbBench::yuyv << QSize(320, 240);
    QTest::newRow("YUYV 640 x 480") << UsbBench::yuyv << UsbBench::small;
}

void tst_KernelUsbCamera::showsEveryMode()
{
    QFETCH(int, format);
    QFETCH(QSize, size);
    const auto viewer = bench->opened();
    QVERIFY(viewer && viewer->choose(format, size));
    QVERIFY(viewer->sees(5, size));
    viewer->forget();
    QElapsedTimer timer;
    timer.start();
    QVERIFY(viewer->sees(20, size));
    const auto elapsed = double(timer.elapsed());

    const auto pictures = viewer->pictures();
    for (std::size_t i = 1; i < pictures.size(); ++i) {
        const int step = (pictures[i].number - pictures[i - 1].number + 256) % 256;
        QVERIFY2(step > 0 && step < 128, "a picture came twice or too late");
    }
    QCOMPARE(previewSizeOf(viewer->device()), size);
    QCOMPARE(viewer->damagedFrames(), quint64(0));
    qInfo("%s: %.1f frames per second", QTest::currentDataTag(),
          double(pictures.size()) * 1000.0 / elapsed);
}

void tst_KernelUsbCamera::changesModesWhileItRuns()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer);
    QVERIFY(viewer->sees(1, UsbBench::large));
    for (const QSize& size :
         {UsbBench::small, UsbBench::medium, UsbBench::large, UsbBench::medium}) {
        QVERIFY(viewer->choose(UsbBench::mjpeg, size));
        QVERIFY(viewer->sees(3, size));
    }
    QVERIFY(viewer->choose(UsbBench::yuyv, UsbBench::small));
    QVERIFY(viewer->sees(3, UsbBench::small));
    QVERIFY(viewer->choose(UsbBench::mjpeg, UsbBench::medium));
    QVERIFY(viewer->sees(3, UsbBench::medium));
    for (int i = 0; i < 20; ++i)
        QVERIFY(viewer->choose(UsbBench::mjpeg, i % 2 ? UsbBench::small : UsbBench::large));
    QVERIFY(viewer->sees(3, UsbBench::small));
}

void tst_KernelUsbCamera::takesTheFastestRate()
{
    const auto viewer = bench->opened();
    QVERIFY(viewer && viewer->sees(1, UsbBench::large));
    QVERIFY(bench->usb.hears(QStringLiteral("STARTED MJPG 1920x1080 333333")));
}

void tst_KernelUsbCamera::takesALargerStill()
{
    const auto viewer = bench->opened(true);
    QVERIFY(viewer && viewer->device().hasStillCapture());
    QVERIFY(viewer->choose(UsbBench::mjpeg, UsbBench::small) &&
            viewer->chooseStill(UsbBench::large));
    QVERIFY(viewer->sees(3, UsbBench::small));
    bench->usb.forget();
    const QImage still = viewer->camera.snap();
    QCOMPARE(still.size(), UsbBench::large);
    QVERIFY(pictures::areQuarters(still));
    QVERIFY(viewer->sees(3, UsbBench::small));
    const QStringList started = bench->usb.heard(QStringLiteral("STARTED MJPG "));
    QCOMPARE(started.first(), QStringLiteral("1920x1080 333333"));
    QCOMPARE(started.last(), QStringLiteral("640x480 333333"));
    bench->usb.forget();
    QVERIFY(viewer->chooseStill(UsbBench::small));
    QCOMPARE(viewer->camera.snap().size(), UsbBench::small);
    QVERIFY(viewer->sees(3, UsbBench::small));
    QCOMPARE(bench->usb.heard(QStringLiteral("STARTED MJPG 1920")), QStringList());
}

QTEST_GUILESS_MAIN(tst_KernelUsbCamera)
#include "tst_KernelUsbCamera.moc"
