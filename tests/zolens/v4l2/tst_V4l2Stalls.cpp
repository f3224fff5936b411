#include "PluggedWebcam.h"

#include "support/Gate.h"
#include "support/NoNewThread.h"
#include "support/TimeLimits.h"
#include "support/fakev4l2/TestPictures.h"
#include "zolens/FrameCollector.h"

#include <QElapsedTimer>
#include <QtTest>

#include <limits>

using namespace std::chrono_literals;
using zolens::V4l2Camera;

/// Devices that hang and devices whose frames stay away: nobody waits for them, and they restart.
class tst_V4l2Stalls final : public QObject, protected PluggedWebcam
{
    Q_OBJECT

private slots:
    void init() { plugWebcam(); }

    void aHangingDeviceEndsTheOpeningInTime();
    void stopsInTimeWhileTheDeviceHangs();
    void aHangingControlHoldsNobodyUp();
    void restartsAStalledDevice();
    void restartsADeviceThatPromisesFramesButHasNone();
    void restartsADeviceThatSendsOnlyDamage_data();
    void restartsADeviceThatSendsOnlyDamage();
    void aGoodFrameNowAndThenIsNoStall();
    void framesThatNobodyWantsAreNoStall();
    void aLongExposureIsNoStall();
    void restartsABrokenQueue();
    void triesUntilARestartWorks();
    void triesUntilThereAreThreadsToDecode();
};

void tst_V4l2Stalls::aHangingDeviceEndsTheOpeningInTime()
{
    Gate gate;
    FrameCollector otherSink;
    V4l2Camera other(bench->address(), false);
    QVERIFY(other.start(&otherSink));
    bench->plug(1, CameraBench::webcam(), "1234", "5678");
    auto address = bench->address();
    address.number = 1;
    FrameCollector sink;
    V4l2Camera camera(address, false);
    const auto hang = gate.wait();
    bench->system->before(VIDIOC_STREAMON, hang);
    bench->system->before(VIDIOC_STREAMOFF, hang);
    QElapsedTimer timer;
    timer.start();
    other.stop();
    QVERIFY(!camera.start(&sink));
    // The time for an opening, with the end of a device that hangs too.
    QVERIFY2(timer.elapsed() < timelimits::start, qPrintable(QString::number(timer.elapsed())));
    gate.open();
    QTRY_COMPARE(bench->system->openHandles(), 0);
    QCOMPARE(int(sink.asked), 0);
}

void tst_V4l2Stalls::stopsInTimeWhileTheDeviceHangs()
{
    Gate gate;
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(1, 5s));
    bench->system->before(VIDIOC_STREAMOFF, gate.wait());
    QElapsedTimer timer;
    timer.start();
    camera.stop();
    QVERIFY2(timer.elapsed() < timelimits::stop, qPrintable(QString::number(timer.elapsed())));
    const int asked = sink.asked;
    gate.open();
    QTRY_COMPARE(bench->system->openHandles(), 0);
    QCOMPARE(int(sink.asked), asked);
}

void tst_V4l2Stalls::aHangingControlHoldsNobodyUp()
{
    Gate gate;
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    double brightness = -1;
    QCOMPARE(camera.getProperty(CMProperty_Brightness, &brightness), 0);
    bench->system->before(VIDIOC_S_CTRL, gate.wait());
    QElapsedTimer timer;
    timer.start();
    camera.setProperty(CMProperty_Brightness, 1);
    camera.setProperty(CMProperty_Brightness, 2);
    double value = -1;
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(camera.getProperty(CMProperty_Brightness, &value), 0);
        QCOMPARE(value, brightness);
    }
    QVERIFY2(timer.elapsed() < timelimits::deviceCall,
             qPrintable(QString::number(timer.elapsed())));
    QVERIFY(sink.waitForFrames(5, 5s));
    timer.restart();
    camera.stop();
    QVERIFY2(timer.elapsed() < timelimits::stop, qPrintable(QString::number(timer.elapsed())));
    gate.open();
    QTRY_COMPARE(bench->system->openHandles(), 0);
}

void tst_V4l2Stalls::restartsAStalledDevice()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 5s));
    device->stall();
    QElapsedTimer timer;
    timer.start();
    QTRY_COMPARE_WITH_TIMEOUT(camera.restarts(), quint64(1), 10000);
    QVERIFY2(timer.elapsed() > 1800 && timer.elapsed() < timelimits::stall,
             qPrintable(QString::number(timer.elapsed())));
    QVERIFY(sink.waitForFrames(5, 5s));
}

void tst_V4l2Stalls::restartsADeviceThatPromisesFramesButHasNone()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 5s));
    const int asked = bench->system->calls(VIDIOC_DQBUF);
    bench->system->fail(VIDIOC_DQBUF, EAGAIN, std::numeric_limits<int>::max());
    QElapsedTimer timer;
    timer.start();
    QTRY_COMPARE_WITH_TIMEOUT(camera.restarts(), quint64(1), timelimits::stall);
    QVERIFY2(timer.elapsed() > 1800, qPrintable(QString::number(timer.elapsed())));
    // Without haste: at most every five milliseconds.
    QVERIFY(bench->system->calls(VIDIOC_DQBUF) < asked + timelimits::stall / 5);
    bench->system->fail(VIDIOC_DQBUF, 0, 0);
    QVERIFY(sink.waitForFrames(5, 5s));
}

void tst_V4l2Stalls::restartsADeviceThatSendsOnlyDamage_data()
{
    QTest::addColumn<bool>("driverTells");
    QTest::newRow("as the driver tells") << true;
    QTest::newRow("as the decoder finds") << false;
}

void tst_V4l2Stalls::restartsADeviceThatSendsOnlyDamage()
{
    QFETCH(bool, driverTells);
    device->frameFlags = driverTells ? V4L2_BUF_FLAG_ERROR : 0;
    device->pictures = [this, driverTells](quint32 fourcc, const QSize& size, int) {
        const QByteArray good = pictures::quartersAs(fourcc, size);
        const bool isWhole = driverTells || bench->system->calls(VIDIOC_STREAMON) > 1;
        return isWhole ? good : good.left(good.size() / 2);
    };
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(camera.start(&sink));
    QTRY_COMPARE_WITH_TIMEOUT(camera.restarts(), quint64(1), 10000);
    QVERIFY2(timer.elapsed() > 1800, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(driverTells || sink.waitForFrames(5, 5s));
}

void tst_V4l2Stalls::aGoodFrameNowAndThenIsNoStall()
{
    int frames = 0;
    device->pictures = [&frames](quint32 fourcc, const QSize& size, int) {
        const QByteArray good = pictures::quartersAs(fourcc, size);
        return ++frames % 12 == 0 ? good : good.left(good.size() / 2);
    };
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(10, 20s));
    QVERIFY(camera.damagedFrames() > 60);
    QCOMPARE(camera.restarts(), quint64(0));
}

void tst_V4l2Stalls::framesThatNobodyWantsAreNoStall()
{
    FrameCollector sink;
    sink.refusing = true;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QTRY_VERIFY_WITH_TIMEOUT(sink.asked > 100, 20000);
    QCOMPARE(camera.restarts(), quint64(0));
}

void tst_V4l2Stalls::aLongExposureIsNoStall()
{
    device->controls = {};
    device->controls.addInteger(V4L2_CID_EXPOSURE_ABSOLUTE, 1, 100000, 20000);
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 5s));
    device->stall();
    QElapsedTimer timer;
    timer.start();
    // Two seconds more than without.
    QTRY_COMPARE_WITH_TIMEOUT(camera.restarts(), quint64(1), 2000 + timelimits::stall);
    QVERIFY2(timer.elapsed() > 3800, qPrintable(QString::number(timer.elapsed())));
}

void tst_V4l2Stalls::restartsABrokenQueue()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 5s));
    device->breakQueue();
    QTRY_COMPARE(camera.restarts(), quint64(1));
    QVERIFY(sink.waitForFrames(5, 5s));
}

void tst_V4l2Stalls::triesUntilARestartWorks()
{
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 5s));
    bench->system->fail(VIDIOC_STREAMON, EIO, 2);
    device->breakQueue();
    QVERIFY(sink.waitForFrames(20, 10s));
    QCOMPARE(camera.restarts(), quint64(3));
}

void tst_V4l2Stalls::triesUntilThereAreThreadsToDecode()
{
    std::unique_ptr<NoNewThread> limit;
    int starts = 0;
    bench->system->before(VIDIOC_STREAMON, [&limit, &starts] {
        if (++starts == 1)
            limit = std::make_unique<NoNewThread>();
    });
    bench->system->before(VIDIOC_STREAMOFF, [&limit] { limit.reset(); });
    FrameCollector sink;
    V4l2Camera camera(bench->address(), false);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(3, 10s));
    QCOMPARE(camera.restarts(), quint64(1));
}

QTEST_GUILESS_MAIN(tst_V4l2Stalls)
#include "tst_V4l2Stalls.moc"
