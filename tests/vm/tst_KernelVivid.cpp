#include "Settings.h"
#include "VideoControls.h"
#include "Viewer.h"
#include "support/CameraValues.h"
#include "v4l2/FrameDecoder.h"
#include "v4l2/V4l2Device.h"
#include "v4l2/V4l2Stream.h"

#include <zolens/CWFactory.h>
#include <zolens/CWUVCFilter.h>

#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QtTest>

#include <poll.h>

#include <algorithm>
#include <cstdlib>

using zolens::V4l2Device;
using zolens::V4l2Stream;

/// The kernel's virtual video driver, which is no USB camera: raw formats, and faults on request.
class tst_KernelVivid final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void isListedAsAnotherCaptureDevice();
    void comesAndGoesWithItsDriver();
    void offersEachKindOfFormatOnce();
    void showsEachKindOfFormat_data();
    void showsEachKindOfFormat();
    void decodesEveryFormat_data();
    void decodesEveryFormat();
    void changesSizesWhileItRuns();
    void knowsOnlyControlsThatItCanShow();
    void holdsAndReadsValues();
    void gainIsLeftToTheDeviceInAutomatic();
    void countsFramesThatTheDriverCallsDamaged();
    void restartsABrokenQueue();
    void restartsWhenAllFramesAreLost();
    void goesBackWhenANewModeDoesNotStart();
    void doesNotOpenWhenTheStreamDoesNotStart();
    void endsWhenItIsDisconnected();

private:
    std::vector<_tag_VideoDeviceInfo> listed() const;
    std::unique_ptr<Viewer> opened() const;

    static constexpr QSize size{640, 360};
    CWUVCFilter filter;
    int index = -1; ///< Of the device.
};

namespace {

constexpr int packedYuv = 5;
constexpr int planarYuv = 7;
constexpr int packedRgb = 0;
constexpr int otherRgb = 1;

constexpr int tolerance = 12;
constexpr int bars = 8;
constexpr int full = 191; ///< Of three quarters.

/// Bars in white, yellow, cyan, green, magenta, red, blue and black, at three quarters of the
/// range. The driver writes texts onto them, in the upper half.
QRgb barColor(int bar)
{
    const auto part = [bar](int bit) { return bar & bit ? 0 : full; };
    return qRgb(part(2), part(4), part(1));
}

bool isNear(int a, int b)
{
    return std::abs(a - b) <= tolerance;
}

bool isNear(QRgb a, QRgb b)
{
    return isNear(qRed(a), qRed(b)) && isNear(qGreen(a), qGreen(b)) && isNear(qBlue(a), qBlue(b));
}

QRgb barIn(const QImage& image, int bar)
{
    return image.pixel((2 * bar + 1) * image.width() / (2 * bars), image.height() * 7 / 8);
}

bool showsBars(const QImage& image)
{
    for (int bar = 0; bar < bars; ++bar) {
        if (!isNear(barIn(image, bar), barColor(bar)))
            return false;
    }
    return true;
}

/// The driver makes grey of the colours as BT.709 weighs them.
bool showsGreyBars(const QImage& image)
{
    for (int bar = 0; bar < bars; ++bar) {
        const QRgb color = barColor(bar);
        const int grey =
            qRound(0.2126 * qRed(color) + 0.7152 * qGreen(color) + 0.0722 * qBlue(color));
        if (!isNear(barIn(image, bar), qRgb(grey, grey, grey)))
            return false;
    }
    return true;
}

QString barText(const QImage& image)
{
    QStringList colors;
    for (int bar = 0; bar < bars; ++bar)
        colors << QColor(barIn(image, bar)).name();
    return colors.join(QLatin1Char(' '));
}

bool modprobe(const QStringList& arguments)
{
    return QProcess::execute(QStringLiteral("modprobe"), arguments) == 0;
}

} // namespace

void tst_KernelVivid::initTestCase()
{
    filter.addItem({0, 0, {}, CWDevice_Uvc});
    filter.addItem({0, 0, {}, CWDevice_OtherCapture});
    CWFactory::setUVCFilter(&filter);
}

void tst_KernelVivid::init()
{
    QTRY_COMPARE_WITH_TIMEOUT(int(listed().size()), 1, vm::patience);
    index = listed().front().index;
}

std::vector<_tag_VideoDeviceInfo> tst_KernelVivid::listed() const
{
    std::vector<_tag_VideoDeviceInfo> devices = CWFactory::videoDeviceList();
    devices.erase(
        std::remove_if(devices.begin(), devices.end(),
                       [](const auto& device) { return device.type == CWDevice_Simulated; }),
        devices.end());
    return devices;
}

/// Also while the kernel still lets go of it after the test before.
std::unique_ptr<Viewer> tst_KernelVivid::opened() const
{
    auto viewer = std::make_unique<Viewer>(showsBars);
    const auto open = [&] { return viewer->open({CWDevice_OtherCapture, index, {}, 0, {}}); };
    if (!QTest::qWaitFor(open, vm::patience))
        viewer.reset();
    return viewer;
}

void tst_KernelVivid::isListedAsAnotherCaptureDevice()
{
    const auto device = listed().front();
    QCOMPARE(device.type, int(CWDevice_OtherCapture));
    QCOMPARE(device.name, std::string("vivid"));
    QVERIFY(!Viewer().open({CWDevice_Uvc, index, {}, 0, {}}));
}

void tst_KernelVivid::comesAndGoesWithItsDriver()
{
    QVERIFY(modprobe({QStringLiteral("-r"), QStringLiteral("vivid")}));
    QVERIFY(listed().empty());
    QVERIFY(modprobe({QStringLiteral("vivid"), QStringLiteral("n_devs=1"),
                      QStringLiteral("node_types=0x1"), QStringLiteral("num_inputs=1"),
                      QStringLiteral("input_types=0")}));
    QTRY_COMPARE_WITH_TIMEOUT(int(listed().size()), 1, vm::patience);
    index = listed().front().index;
    const auto viewer = opened();
    QVERIFY(viewer && viewer->seesAny(1));
}

void tst_KernelVivid::offersEachKindOfFormatOnce()
{
    const auto viewer = opened();
    QVERIFY(viewer);
    std::vector<int> formats;
    viewer->device().previewFormats(&formats);
    QCOMPARE(formats, (std::vector<int>{packedYuv, planarYuv, packedRgb, otherRgb}));
    const std::vector<QSize> sizes = cameravalues::sizesOf(viewer->device());
    QCOMPARE(sizes.front(), QSize(320, 180));
    QCOMPARE(sizes.back(), QSize(3840, 2160));
    QCOMPARE(cameravalues::previewSizeOf(viewer->device()), QSize(1920, 1080));
}

void tst_KernelVivid::showsEachKindOfFormat_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("packed YUV") << packedYuv;
    QTest::newRow("planar YUV") << planarYuv;
    QTest::newRow("packed RGB") << packedRgb;
    QTest::newRow("other RGB") << otherRgb;
}

void tst_KernelVivid::showsEachKindOfFormat()
{
    QFETCH(int, format);
    const auto viewer = opened();
    QVERIFY(viewer && viewer->choose(format, size));
    QVERIFY(viewer->sees(2, size));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(viewer->sees(10, size));
    qInfo("%s 640 x 360: %.1f frames per second", QTest::currentDataTag(),
          10 * 1000.0 / double(timer.elapsed()));
    QCOMPARE(viewer->damagedFrames(), quint64(0));
}

void tst_KernelVivid::decodesEveryFormat_data()
{
    QTest::addColumn<quint32>("fourcc");
    QTest::addColumn<bool>("isGrey");
    QTest::newRow("YUYV") << quint32(V4L2_PIX_FMT_YUYV) << false;
    QTest::newRow("UYVY") << quint32(V4L2_PIX_FMT_UYVY) << false;
    QTest::newRow("YVYU") << quint32(V4L2_PIX_FMT_YVYU) << false;
    QTest::newRow("NV12") << quint32(V4L2_PIX_FMT_NV12) << false;
    QTest::newRow("NV21") << quint32(V4L2_PIX_FMT_NV21) << false;
    QTest::newRow("YUV 4:2:0") << quint32(V4L2_PIX_FMT_YUV420) << false;
    QTest::newRow("YUV 4:2:2") << quint32(V4L2_PIX_FMT_YUV422P) << false;
    QTest::newRow("grey") << quint32(V4L2_PIX_FMT_GREY) << true;
    QTest::newRow("BGR 24") << quint32(V4L2_PIX_FMT_BGR24) << false;
    QTest::newRow("RGB 24") << quint32(V4L2_PIX_FMT_RGB24) << false;
    QTest::newRow("XBGR 32") << quint32(V4L2_PIX_FMT_XBGR32) << false;
    QTest::newRow("BGR 32") << quint32(V4L2_PIX_FMT_BGR32) << false;
    QTest::newRow("RGB 565") << quint32(V4L2_PIX_FMT_RGB565) << false;
}

void tst_KernelVivid::decodesEveryFormat()
{
    QFETCH(quint32, fourcc);
    QFETCH(bool, isGrey);
    const QString path = QStringLiteral("/dev/video%1").arg(index);
    const auto device = std::make_shared<V4l2Device>(zolens::kernelV4l2(), path);
    QVERIFY(device->isOpen());
    V4l2Stream stream(device);
    QTRY_COMPARE_WITH_TIMEOUT(stream.start(*zolens::findPixelFormat(fourcc), size), 0,
                              vm::patience);
    QCOMPARE(stream.layout().size, size);
    pollfd source = {device->descriptor(), POLLIN, 0};
    QCOMPARE(device->system().poll(&source, 1, vm::patience), 1);
    zolens::DriverFrame frame;
    QCOMPARE(stream.take(&frame), 0);
    QImage image(size, QImage::Format_RGB32);
    const auto decoder = zolens::makeDecoder(stream.layout());
    QCOMPARE(decoder->decode(frame, {}, &image), zolens::FrameDecoder::Result::Picture);
    stream.giveBack(frame);
    QVERIFY2(isGrey ? showsGreyBars(image) : showsBars(image), qPrintable(barText(image)));
}

void tst_KernelVivid::changesSizesWhileItRuns()
{
    const auto viewer = opened();
    QVERIFY(viewer);
    for (const QSize& next : {QSize(320, 180), size, QSize(1280, 720), QSize(320, 180)}) {
        QVERIFY(viewer->choose(packedYuv, next));
        QVERIFY(viewer->sees(2, next));
    }
}

/// The driver has controls of every type there is.
void tst_KernelVivid::knowsOnlyControlsThatItCanShow()
{
    const auto viewer = opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    for (const auto id : {CMProperty_Brightness, CMProperty_Contrast, CMProperty_Saturation,
                          CMProperty_Hue, CMProperty_Gain})
        QVERIFY2(camera.isPropertySupported(id), qPrintable(QString::number(id)));
    for (const auto id : {CMProperty_ExposureTime, CMProperty_ExposureTarget, CMProperty_RedGain,
                          CMProperty_GreenGain, CMProperty_BlueGain, CMProperty_ColorTemperature})
        QVERIFY2(!camera.isPropertySupported(id), qPrintable(QString::number(id)));
    std::vector<int> values{1};
    camera.powerFrequencies(&values);
    QVERIFY(values.empty());
    camera.whiteBalanceModes(&values);
    QVERIFY(values.empty());
}

void tst_KernelVivid::holdsAndReadsValues()
{
    const auto viewer = opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    VideoControls controls(index);
    double value = -1;
    QCOMPARE(camera.setProperty(CMProperty_Brightness, 100), 0);
    QCOMPARE(controls.value(QStringLiteral("Brightness")), std::optional<int>(100));
    QCOMPARE(camera.setProperty(CMProperty_Brightness, 1000), 0);
    QCOMPARE(controls.value(QStringLiteral("Brightness")), std::optional<int>(255));
    // Another program turns the same knob.
    QVERIFY(controls.set(QStringLiteral("Brightness"), 77));
    QCOMPARE(camera.getProperty(CMProperty_Brightness, &value), 0);
    QCOMPARE(value, 77.0);
    QCOMPARE(camera.resetProperty(CMProperty_Brightness), 128.0);
    QCOMPARE(controls.value(QStringLiteral("Brightness")), std::optional<int>(128));
}

void tst_KernelVivid::gainIsLeftToTheDeviceInAutomatic()
{
    const auto viewer = opened();
    QVERIFY(viewer);
    CWCamera& camera = viewer->device();
    VideoControls controls(index);
    camera.setAutoExposure(true);
    QCOMPARE(controls.value(QStringLiteral("Gain, Automatic")), std::optional<int>(1));
    QVERIFY(camera.setProperty(CMProperty_Gain, 50) != 0);
    camera.setAutoExposure(false);
    QCOMPARE(controls.value(QStringLiteral("Gain, Automatic")), std::optional<int>(0));
    QCOMPARE(camera.setProperty(CMProperty_Gain, 50), 0);
    QCOMPARE(controls.value(QStringLiteral("Gain")), std::optional<int>(50));
}

void tst_KernelVivid::countsFramesThatTheDriverCallsDamaged()
{
    const auto viewer = opened();
    QVERIFY(viewer && viewer->choose(packedYuv, size) && viewer->sees(2, size));
    VideoControls controls(index);
    QVERIFY(controls.press(QStringLiteral("Inject V4L2_BUF_FLAG_ERROR")));
    QTRY_VERIFY_WITH_TIMEOUT(viewer->damagedFrames() > 0, vm::patience);
    QVERIFY(viewer->sees(5, size));
}

void tst_KernelVivid::restartsABrokenQueue()
{
    const auto viewer = opened();
    QVERIFY(viewer && viewer->choose(packedYuv, size) && viewer->sees(2, size));
    VideoControls controls(index);
    QVERIFY(controls.press(QStringLiteral("Inject Fatal Streaming Error")));
    QTRY_VERIFY_WITH_TIMEOUT(viewer->restarts() >= 1, vm::patience);
    QVERIFY(viewer->sees(5, size));
}

void tst_KernelVivid::restartsWhenAllFramesAreLost()
{
    const auto viewer = opened();
    QVERIFY(viewer && viewer->choose(packedYuv, size) && viewer->sees(2, size));
    VideoControls controls(index);
    const QString lost = QStringLiteral("Percentage of Dropped Buffers");
    QVERIFY(controls.set(lost, 100));
    QTRY_VERIFY_WITH_TIMEOUT(viewer->restarts() > 0, vm::patience);
    QVERIFY(controls.set(lost, 0));
    QVERIFY(viewer->sees(5, size));
}

void tst_KernelVivid::goesBackWhenANewModeDoesNotStart()
{
    const auto viewer = opened();
    QVERIFY(viewer && viewer->choose(packedYuv, size) && viewer->sees(2, size));
    VideoControls controls(index);
    QVERIFY(controls.press(QStringLiteral("Inject VIDIOC_STREAMON Error")));
    QVERIFY(viewer->choose(packedYuv, QSize(320, 180)));
    QTRY_COMPARE_WITH_TIMEOUT(cameravalues::previewSizeOf(viewer->device()), size, vm::patience);
    QVERIFY(viewer->sees(2, size));
}

void tst_KernelVivid::doesNotOpenWhenTheStreamDoesNotStart()
{
    VideoControls controls(index);
    QVERIFY(controls.press(QStringLiteral("Inject VIDIOC_STREAMON Error")));
    QVERIFY(!Viewer().open({CWDevice_OtherCapture, index, {}, 0, {}}));
    QVERIFY(opened());
}

/// The driver comes back when all have closed it.
void tst_KernelVivid::endsWhenItIsDisconnected()
{
    const auto viewer = opened();
    QVERIFY(viewer && viewer->choose(packedYuv, size) && viewer->sees(2, size));
    const quint64 restarts = viewer->restarts();
    QVERIFY(VideoControls(index).press(QStringLiteral("Disconnect")));
    double value = 0;
    QTRY_VERIFY_WITH_TIMEOUT(viewer->device().getProperty(CMProperty_Brightness, &value) != 0,
                             vm::patience);
    QVERIFY(viewer->camera.snap().isNull());
    QCOMPARE(viewer->restarts(), restarts);
    viewer->camera.close();
    QTRY_COMPARE_WITH_TIMEOUT(int(listed().size()), 1, vm::patience);
    const auto next = opened();
    QVERIFY(next && next->seesAny(2));
}

QTEST_GUILESS_MAIN(tst_KernelVivid)
#include "tst_KernelVivid.moc"
