#include "support/CameraValues.h"
#include "support/ProcessUse.h"
#include "support/TimeLimits.h"
#include "support/fakev4l2/CameraBench.h"
#include "support/fakev4l2/TestPictures.h"
#include "zolens/FrameCollector.h"

#include <QtTest>

using namespace cameravalues;
using namespace std::chrono_literals;
using zolens::V4l2Camera;

namespace {

using Sizes = std::vector<QSize>;

constexpr int mjpeg = 0; ///< Position in the list of the webcam's formats.
constexpr int yuyv = 1;

/// Keeps the grey of every frame, in the order of their coming.
class GreySink final : public zolens::FrameSink
{
public:
    QImage acquireFrame(const QSize& size) override { return QImage(size, QImage::Format_RGB32); }
    void deliver(QImage&& frame) override
    {
        const std::lock_guard<std::mutex> lock(mutex);
        values.push_back(pictures::greyNumber(frame));
    }
    std::vector<int> greys() const
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return values;
    }

private:
    mutable std::mutex mutex;
    std::vector<int> values;
};

} // namespace

class tst_V4l2Camera final : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        bench = std::make_unique<CameraBench>();
        device = CameraBench::webcam();
        bench->plug(0, device, "1234", "5678");
    }

    void showsWhatTheDeviceSees();
    void keepsItsRate();
    void knowsFormatsAndSizes();
    void changesTheSizeWhileItRuns();
    void changesTheFormatWhileItRuns();
    void choosingTheSameAgainInterruptsNothing();
    void followsTheLastOfManyChoices();
    void goesBackWhenTheDeviceRefusesAMode();
    void takesTheSizeThatTheDeviceChose();
    void turnsThePictures();
    void appliesTheColorMode();
    void keepsTheLookWhenItIsStartedAnew();
    void takesAStillOfThePreview();
    void takesAStillInALargerSize();
    void aStillOfThePreviewSizeNeedsNoSwitch();
    void hasNoStillSizesUnlessAskedFor();
    void takesLargeStillsWithALongExposure();
    void takesNoStillWhileStopped();
    void keepsTheOrderOfLargeFrames();
    void decodesNothingThatNobodyWants();
    void describesTheDevice();
    void releasesEverything();

private:
    std::unique_ptr<CameraBench> bench;
    std::shared_ptr<FakeCamera> device;
};

void tst_V4l2Camera::showsWhatTheDeviceSees()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 5s));
    QCOMPARE(sink.lastFrame().size(), QSize(1920, 1080));
    QVERIFY(pictures::areQuarters(sink.lastFrame()));
    QCOMPARE(camera.damagedFrames(), quint64(0));
}

void tst_V4l2Camera::keepsItsRate()
{
    device->formats = {{V4L2_PIX_FMT_YUYV, {{640, 480}}, {}}};
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(5, 5s));
    QElapsedTimer timer;
    timer.start();
    // Three seconds' worth; with the device's slower rate it would take six.
    QVERIFY(sink.waitForFrames(90, 10s));
    QVERIFY2(timer.elapsed() > 2800, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(timer.elapsed() < 3000 + timelimits::slack,
             qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(bench->system->calls(VIDIOC_STREAMON), 1);
}

void tst_V4l2Camera::knowsFormatsAndSizes()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QCOMPARE(formatsOf(camera), (std::vector<int>{19, 5}));
    QCOMPARE(camera.previewFormat(), 19);
    Sizes sizes{{1, 1}};
    camera.previewSizes(&sizes);
    QCOMPARE(sizes, (Sizes{{640, 480}, {1280, 720}, {1920, 1080}}));
    QCOMPARE(previewSizeOf(camera), QSize(1920, 1080));
}

void tst_V4l2Camera::changesTheSizeWhileItRuns()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
    const Sizes sizes{{640, 480}, {1280, 720}, {1920, 1080}};
    for (const int position : {0, 1, 2, 0}) {
        QCOMPARE(camera.setPreviewSize(position), 0);
        QTRY_COMPARE(sink.lastFrame().size(), sizes[std::size_t(position)]);
        QCOMPARE(previewSizeOf(camera), sizes[std::size_t(position)]);
        QVERIFY(pictures::areQuarters(sink.lastFrame()));
    }
    QVERIFY(camera.setPreviewSize(3) != 0);
    QVERIFY(camera.setPreviewSize(-1) != 0);
    QCOMPARE(int(sink.modeChanges), 0);
}

void tst_V4l2Camera::changesTheFormatWhileItRuns()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QCOMPARE(camera.setPreviewFormat(yuyv), 0);
    QCOMPARE(camera.previewFormat(), 5);
    QCOMPARE(previewSizeOf(camera), QSize(640, 480));
    QTRY_COMPARE(device->fourcc(), quint32(V4L2_PIX_FMT_YUYV));
    QTRY_COMPARE(sink.lastFrame().size(), QSize(640, 480));
    QVERIFY(pictures::areQuarters(sink.lastFrame()));
    QCOMPARE(sizesOf(camera), (Sizes{{640, 480}}));
    QCOMPARE(camera.setPreviewFormat(mjpeg), 0);
    QTRY_COMPARE(device->fourcc(), quint32(V4L2_PIX_FMT_MJPEG));
    QVERIFY(sink.waitForFrames(2, 5s));
    QVERIFY(camera.setPreviewFormat(2) != 0);
}

void tst_V4l2Camera::choosingTheSameAgainInterruptsNothing()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QCOMPARE(camera.setPreviewFormat(mjpeg), 0);
    QCOMPARE(camera.setPreviewSize(2), 0);
    QVERIFY(sink.waitForFrames(5, 5s));
    QCOMPARE(bench->system->calls(VIDIOC_STREAMON), 1);
}

void tst_V4l2Camera::followsTheLastOfManyChoices()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    for (int i = 0; i < 100; ++i)
        camera.setPreviewSize(i % 3);
    camera.setPreviewSize(1);
    QTRY_COMPARE(sink.lastFrame().size(), QSize(1280, 720));
    QCOMPARE(device->size(), QSize(1280, 720));
}

void tst_V4l2Camera::goesBackWhenTheDeviceRefusesAMode()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
    bench->system->fail(VIDIOC_STREAMON, ENOSPC);
    QCOMPARE(camera.setPreviewSize(0), 0);
    QTRY_COMPARE(previewSizeOf(camera), QSize(1920, 1080));
    QVERIFY(sink.waitForFrames(2, 5s));
    QCOMPARE(sink.lastFrame().size(), QSize(1920, 1080));
    QCOMPARE(int(sink.modeChanges), 1);
}

void tst_V4l2Camera::takesTheSizeThatTheDeviceChose()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
    device->formats[1].sizes = {{1280, 720}};
    QCOMPARE(camera.setPreviewSize(0), 0);
    QTRY_COMPARE(sink.lastFrame().size(), QSize(1280, 720));
    QCOMPARE(previewSizeOf(camera), QSize(1280, 720));
    QCOMPARE(int(sink.modeChanges), 1);
}

void tst_V4l2Camera::turnsThePictures()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    camera.setFlip(true);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
    QVERIFY(camera.flip());
    QVERIFY(pictures::areQuarters(sink.lastFrame(), true, false));
    camera.setMirror(true);
    QVERIFY(camera.mirror());
    QVERIFY(sink.waitForFrames(4, 5s));
    QVERIFY(pictures::areQuarters(sink.lastFrame(), true, true));
}

void tst_V4l2Camera::appliesTheColorMode()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QCOMPARE(camera.setProperty(CMProperty_ColorMode, 1), 0);
    QVERIFY(sink.waitForFrames(4, 5s));
    const QRgb pixel = sink.lastFrame().pixel(10, 10);
    QCOMPARE(qRed(pixel), qBlue(pixel));
    QVERIFY(std::abs(qRed(pixel) - 76) < 4);
}

void tst_V4l2Camera::keepsTheLookWhenItIsStartedAnew()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    camera.setMirror(true);
    camera.setProperty(CMProperty_ColorMode, 1);
    camera.setProperty(CMProperty_Denoise, 30);
    camera.stop();
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(2, 5s));
    QVERIFY(sink.lastFrame().allGray());
    QVERIFY(camera.mirror() && !camera.flip());
    double strength = 0.0;
    QCOMPARE(camera.getProperty(CMProperty_Denoise, &strength), 0);
    QCOMPARE(strength, 30.0);
}

void tst_V4l2Camera::takesAStillOfThePreview()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    camera.setMirror(true);
    sink.refusing = true;
    const QImage still = camera.captureStill();
    QCOMPARE(still.size(), QSize(1920, 1080));
    QVERIFY(pictures::areQuarters(still, false, true));
}

void tst_V4l2Camera::takesAStillInALargerSize()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), true);
    QVERIFY(camera.start(&sink));
    QVERIFY(camera.hasStillCapture());
    QCOMPARE(stillSizeOf(camera), QSize(1920, 1080));
    camera.setPreviewSize(0);
    QTRY_COMPARE(sink.lastFrame().size(), QSize(640, 480));
    for (int i = 0; i < 2; ++i) {
        const QImage still = camera.captureStill();
        QCOMPARE(still.size(), QSize(1920, 1080));
        QVERIFY(pictures::areQuarters(still));
        QVERIFY(sink.waitForFrames(2, 5s));
        QCOMPARE(sink.lastFrame().size(), QSize(640, 480));
    }
    QCOMPARE(camera.setStillCaptureSize(1), 0);
    QCOMPARE(camera.captureStill().size(), QSize(1280, 720));
    QCOMPARE(previewSizeOf(camera), QSize(640, 480));
}

void tst_V4l2Camera::aStillOfThePreviewSizeNeedsNoSwitch()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), true);
    QVERIFY(camera.start(&sink));
    QCOMPARE(camera.captureStill().size(), QSize(1920, 1080));
    QCOMPARE(bench->system->calls(VIDIOC_STREAMON), 1);
}

void tst_V4l2Camera::hasNoStillSizesUnlessAskedFor()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(!camera.hasStillCapture());
    Sizes sizes{{1, 1}};
    camera.stillSizes(&sizes);
    QVERIFY(sizes.empty());
    camera.setPreviewSize(1);
    QCOMPARE(stillSizeOf(camera), QSize(1280, 720));
    device->formats = {{V4L2_PIX_FMT_MJPEG, {{640, 480}}, {}}};
    V4l2Camera single(bench->address(), true);
    camera.stop();
    QVERIFY(single.start(&sink));
    QVERIFY(!single.hasStillCapture());
}

void tst_V4l2Camera::takesLargeStillsWithALongExposure()
{
    device->framesPerSecond = 1;
    FrameCollector sink;
    V4l2Camera camera(bench->address(), true);
    QVERIFY(camera.start(&sink));
    QCOMPARE(camera.setStillCaptureSize(1), 0);
    QVERIFY(sink.waitForFrames(1, 5s));
    QElapsedTimer timer;
    timer.start();
    const QImage still = camera.captureStill();
    QCOMPARE(still.size(), QSize(1280, 720));
    // One picture to settle and the still, without one of the preview before.
    QVERIFY2(timer.elapsed() < 2000 + timelimits::slack,
             qPrintable(QString::number(timer.elapsed())));
}

void tst_V4l2Camera::takesNoStillWhileStopped()
{
    V4l2Camera camera(bench->address(), true);
    QVERIFY(camera.captureStill().isNull());
}

void tst_V4l2Camera::keepsTheOrderOfLargeFrames()
{
    device->formats = {{V4L2_PIX_FMT_MJPEG, {{3840, 2160}}, {}}};
    device->pictures = [](quint32, const QSize& size, int number) {
        return pictures::greyJpeg(size, number);
    };
    for (int i = 0; i < pictures::greySteps; ++i)
        pictures::greyJpeg(QSize(3840, 2160), i);
    GreySink sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QTRY_VERIFY_WITH_TIMEOUT(sink.greys().size() > 40, 30000);
    camera.stop();
    const std::vector<int> greys = sink.greys();
    for (std::size_t i = 1; i < greys.size(); ++i) {
        // Frames may be left out, but never more than half of a round at a time.
        const int steps = pictures::greySteps;
        const int step = (greys[i] - greys[i - 1] + steps) % steps;
        QVERIFY2(step > 0 && step < steps / 2, qPrintable(QString::number(step)));
    }
}

void tst_V4l2Camera::decodesNothingThatNobodyWants()
{
    device->pictures = [](quint32, const QSize&, int) { return QByteArray(1000, 'x'); };
    FrameCollector sink;
    sink.refusing = true;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QTRY_VERIFY(sink.asked > 5);
    QCOMPARE(camera.damagedFrames(), quint64(0));
    QCOMPARE(sink.count(), 0);
}

void tst_V4l2Camera::describesTheDevice()
{
    auto address = bench->address();
    address.filter.clear();
    address.filter.addItem({0x1234, 0x5678, "Model", CWDevice_Uvc});
    FrameCollector sink;
    V4l2Camera camera(address, false);
    QVERIFY(camera.start(&sink));
    QCOMPARE(camera.deviceInfo().name, std::string("Model"));
    QCOMPARE(camera.deviceInfo().type, std::int32_t(0));
    QCOMPARE(camera.deviceInfo().index, std::int32_t(0));
}

void tst_V4l2Camera::releasesEverything()
{
    FrameCollector sink;
    const auto useOnce = [this, &sink] {
        V4l2Camera camera(bench->address(), true);
        QVERIFY(camera.start(&sink));
        QVERIFY(sink.waitForFrames(1, 5s));
        camera.setPreviewSize(0);
        QVERIFY(!camera.captureStill().isNull());
    };
    useOnce();
    const auto before = processuse::settledHoldings();
    for (int i = 0; i < 10; ++i)
        useOnce();
    QCOMPARE(processuse::growthSince(before), QString());
    QCOMPARE(bench->system->openHandles(), 0);
}

QTEST_GUILESS_MAIN(tst_V4l2Camera)
#include "tst_V4l2Camera.moc"
