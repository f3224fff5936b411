#include "PluggedWebcam.h"

#include "support/CameraValues.h"
#include "support/TimeLimits.h"
#include "support/fakev4l2/TestPictures.h"
#include "zolens/CheckingSink.h"
#include "zolens/FrameCollector.h"

#include <QElapsedTimer>
#include <QtTest>

#include <future>
#include <limits>
#include <thread>

extern "C" {
#include <libavutil/mem.h>
}

using namespace std::chrono_literals;
using zolens::V4l2Camera;

/// Openings that fail, damaged frames, and cameras that are pulled out.
class tst_V4l2Failures final : public QObject, protected PluggedWebcam
{
    Q_OBJECT

private slots:
    void init() { plugWebcam(); }

    void aMissingDeviceDoesNotOpen();
    void aDeviceOfAnotherClassDoesNotOpen();
    void aDeviceWithoutKnownFormatsDoesNotOpen();
    void aDeviceInUseDoesNotOpen();
    void aDeviceThatIsReleasedSoonOpens();
    void anErrorEndsTheOpening_data();
    void anErrorEndsTheOpening();
    void aFormatThatIsNotKeptEndsTheOpening();
    void opensInASmallerSizeWhereTheBusHasNoRoom();
    void aBusWithoutAnyRoomEndsTheOpening();
    void aMissingDecoderEndsTheOpening();
    void anErrorOfTheRateDoesNoHarm();
    void skipsDamagedFrames();
    void skipsFramesThatTheDriverCallsDamaged();
    void unpluggingEndsTheStream();
    void unpluggingEndsAStillUnderWay();
    void opensAgainWhenPluggedInAgain();
    void goneWhileItRestarts();
    void aStillThatTheDeviceRefusesIsNull();
};

void tst_V4l2Failures::aMissingDeviceDoesNotOpen()
{
    auto address = bench->address();
    address.number = 3;
    FrameCollector sink;
    V4l2Camera camera(address, false);
    QVERIFY(!camera.start(&sink));
    QCOMPARE(int(sink.asked), 0);
}

void tst_V4l2Failures::aDeviceOfAnotherClassDoesNotOpen()
{
    auto address = bench->address();
    address.type = CWDevice_OtherCapture;
    FrameCollector sink;
    V4l2Camera camera(address, false);
    QVERIFY(!camera.start(&sink));
}

void tst_V4l2Failures::aDeviceWithoutKnownFormatsDoesNotOpen()
{
    device->formats = {{V4L2_PIX_FMT_Z16, {{640, 480}}, {}}};
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(!camera.start(&sink));
    QCOMPARE(bench->system->openHandles(), 0);
}

void tst_V4l2Failures::aDeviceInUseDoesNotOpen()
{
    device->setInUse(true);
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(!camera.start(&sink));
    QCOMPARE(bench->system->openHandles(), 0);
    device->setInUse(false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
}

void tst_V4l2Failures::aDeviceThatIsReleasedSoonOpens()
{
    bench->system->fail(VIDIOC_S_FMT, EBUSY, 3);
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
}

void tst_V4l2Failures::anErrorEndsTheOpening_data()
{
    QTest::addColumn<quint64>("request");
    QTest::newRow("capabilities") << quint64(VIDIOC_QUERYCAP);
    QTest::newRow("formats") << quint64(VIDIOC_ENUM_FMT);
    QTest::newRow("format") << quint64(VIDIOC_S_FMT);
    QTest::newRow("buffers") << quint64(VIDIOC_REQBUFS);
    QTest::newRow("buffer") << quint64(VIDIOC_QUERYBUF);
    QTest::newRow("queue") << quint64(VIDIOC_QBUF);
    QTest::newRow("start") << quint64(VIDIOC_STREAMON);
    QTest::newRow("mapping") << quint64(0);
}

void tst_V4l2Failures::anErrorEndsTheOpening()
{
    QFETCH(quint64, request);
    if (request == 0)
        bench->system->failMmap(ENOMEM);
    else
        bench->system->fail(request, EIO);
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(!camera.start(&sink));
    QCOMPARE(bench->system->openHandles(), 0);
    bench->system->failMmap(0);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
}

void tst_V4l2Failures::aFormatThatIsNotKeptEndsTheOpening()
{
    // The device changes its mind between listing and setting.
    bench->system->before(VIDIOC_S_FMT, [this] {
        device->formats = {{V4L2_PIX_FMT_YUYV, {{640, 480}}, {}}};
    });
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(!camera.start(&sink));
}

void tst_V4l2Failures::opensInASmallerSizeWhereTheBusHasNoRoom()
{
    device->formats = {{V4L2_PIX_FMT_MJPEG, {{640, 480}, {1280, 720}, {1920, 1080}}, {}}};
    bench->system->fail(VIDIOC_STREAMON, ENOSPC, 2);
    FrameCollector sink;
    V4l2Camera camera(bench->address(), true);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
    QCOMPARE(sink.lastFrame().size(), QSize(640, 480));
    QCOMPARE(cameravalues::previewSizeOf(camera), QSize(640, 480));
    // Once there is room again, the size can be chosen.
    QCOMPARE(camera.setPreviewSize(2), 0);
    QTRY_COMPARE(sink.lastFrame().size(), QSize(1920, 1080));
}

void tst_V4l2Failures::aBusWithoutAnyRoomEndsTheOpening()
{
    bench->system->fail(VIDIOC_STREAMON, ENOSPC, int(device->formats.front().sizes.size()));
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(!camera.start(&sink));
    QCOMPARE(bench->system->openHandles(), 0);
}

void tst_V4l2Failures::aMissingDecoderEndsTheOpening()
{
    device->formats = {{V4L2_PIX_FMT_H264, {{640, 480}}, {}}};
    // Too little for a decoder, but enough for what describes it.
    av_max_alloc(512);
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    const bool opened = camera.start(&sink);
    av_max_alloc(std::numeric_limits<int>::max());
    QVERIFY(!opened);
    QCOMPARE(bench->system->openHandles(), 0);
    QVERIFY(camera.start(&sink));
}

void tst_V4l2Failures::anErrorOfTheRateDoesNoHarm()
{
    bench->system->fail(VIDIOC_S_PARM, EINVAL);
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
}

void tst_V4l2Failures::skipsDamagedFrames()
{
    device->pictures = [](quint32 fourcc, const QSize& size, int number) {
        const QByteArray good = pictures::quartersAs(fourcc, size);
        return number % 3 == 0 ? good.left(good.size() / 2) : good;
    };
    CheckingSink sink([](const QImage& image) {
        return pictures::areQuarters(image) ? QString() : QStringLiteral("is damaged");
    });
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QTRY_VERIFY(camera.damagedFrames() > 3);
    QVERIFY(sink.waitForFrames(6, 5s));
    QCOMPARE(camera.restarts(), quint64(0));
    camera.stop();
    QCOMPARE(sink.complaint(), QString());
}

void tst_V4l2Failures::skipsFramesThatTheDriverCallsDamaged()
{
    device->frameFlags = V4L2_BUF_FLAG_ERROR;
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QTRY_VERIFY(camera.damagedFrames() > 20);
    QCOMPARE(int(sink.asked), 0);
}

void tst_V4l2Failures::unpluggingEndsTheStream()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 5s));
    QVERIFY(!camera.isGone());
    bench->unplug(0);
    QTRY_VERIFY(camera.isGone());
    QCOMPARE(bench->system->openHandles(), 0);
    const int asked = sink.asked;
    double value = 0;
    QVERIFY(camera.getProperty(CMProperty_Brightness, &value) != 0);
    QVERIFY(camera.setProperty(CMProperty_Brightness, 1) != 0);
    QVERIFY(camera.captureStill().isNull());
    QCOMPARE(camera.setPreviewSize(0), 0);
    QTest::qWait(200);
    QCOMPARE(int(sink.asked), asked);
    QCOMPARE(camera.restarts(), quint64(0));
    camera.stop();
}

void tst_V4l2Failures::unpluggingEndsAStillUnderWay()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    device->stall();
    auto unplugging = std::async(std::launch::async, [this] {
        std::this_thread::sleep_for(300ms);
        bench->unplug(0);
    });
    QElapsedTimer timer;
    timer.start();
    QVERIFY(camera.captureStill().isNull());
    // Long before a still is given up, which takes five seconds.
    QVERIFY(timer.elapsed() < timelimits::deviceCall);
}

void tst_V4l2Failures::opensAgainWhenPluggedInAgain()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 5s));
    bench->unplug(0);
    QTRY_COMPARE(bench->system->openHandles(), 0);
    QVERIFY(!camera.start(&sink));
    bench->plug(0, CameraBench::webcam(), "1234", "5678");
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 5s));
}

void tst_V4l2Failures::goneWhileItRestarts()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    bench->system->fail(VIDIOC_STREAMON, EIO, 1000);
    device->breakQueue();
    QTRY_VERIFY(camera.restarts() > 1);
    bench->unplug(0);
    QTRY_COMPARE_WITH_TIMEOUT(bench->system->openHandles(), 0, 10000);
}

void tst_V4l2Failures::aStillThatTheDeviceRefusesIsNull()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), true);
    QVERIFY(camera.start(&sink));
    QCOMPARE(camera.setPreviewSize(0), 0);
    QTRY_COMPARE(sink.lastFrame().size(), QSize(640, 480));
    bench->system->fail(VIDIOC_S_FMT, EBUSY);
    QVERIFY(camera.captureStill().isNull());
    QVERIFY(sink.waitForFrames(3, 5s));
    QCOMPARE(sink.lastFrame().size(), QSize(640, 480));
    QCOMPARE(camera.captureStill().size(), QSize(1280, 720));
}

QTEST_GUILESS_MAIN(tst_V4l2Failures)
#include "tst_V4l2Failures.moc"
