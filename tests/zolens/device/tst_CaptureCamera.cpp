#include "device/CaptureCamera.h"
#include "device/CaptureSession.h"
#include "support/CameraValues.h"
#include "support/NoNewThread.h"
#include "zolens/FrameCollector.h"

#include <QElapsedTimer>
#include <QtTest>

#include <poll.h>

using namespace cameravalues;
using namespace std::chrono_literals;
using cameravalues::previewSizeOf;
using zolens::CaptureSession;
using zolens::CaptureWork;

namespace {

constexpr auto patience = 20s;

/// Opens a device of two sizes.
void open(CaptureSession& session)
{
    zolens::VideoFormat format;
    format.sizes = {{320, 240}, {640, 480}};
    session.modes.offer({format});
    session.info.name = "Scripted";
    session.opened.settle(true);
}

/// Brings white frames where they are to be turned upside down, else black ones.
void bringFrames(CaptureSession& session)
{
    open(session);
    do {
        QImage frame = session.sink.acquireFrame(session.modes.preview().size);
        frame.fill(session.look.flip ? Qt::white : Qt::black);
        session.sink.deliver(std::move(frame));
    } while (session.wake.sleepFor(5ms));
}

/// Brings one frame, and the next ones only when it is woken.
void bringFramesWhenWoken(CaptureSession& session)
{
    open(session);
    while (!session.wake.isCancelled()) {
        session.sink.deliver(session.sink.acquireFrame(session.modes.preview().size));
        pollfd bell = {session.wake.descriptor(), POLLIN, 0};
        poll(&bell, 1, -1);
        session.wake.clear();
    }
}

class ScriptedCamera final : public zolens::CaptureCamera
{
public:
    explicit ScriptedCamera(void (*deviceScript)(CaptureSession&))
        : CaptureCamera(false),
          script(deviceScript)
    {
    }

private:
    CaptureWork prepare(zolens::FrameSink* sink) const override
    {
        const auto shared = std::make_shared<CaptureSession>(sink);
        return {shared, [shared, run = script] { run(*shared); }, "scripted-device"};
    }

    void (*const script)(CaptureSession&);
};

} // namespace

class tst_CaptureCamera final : public QObject
{
    Q_OBJECT

private slots:
    void whereNoThreadIsLeftItDoesNotOpen()
    {
        ScriptedCamera camera(bringFrames);
        FrameCollector sink;
        {
            const NoNewThread limit;
            QVERIFY(!camera.start(&sink));
        }
        QVERIFY(camera.captureStill().isNull());
        QVERIFY(camera.start(&sink));
        QVERIFY(sink.waitForFrames(1, patience));
    }

    void aDeviceThatDoesNotOpenLeavesNothing()
    {
        FrameCollector sink;
        ScriptedCamera camera([](CaptureSession&) {});
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!camera.start(&sink));
        QVERIFY(camera.captureStill().isNull());
        QVERIFY2(timer.elapsed() < 4000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(camera.deviceInfo().name, std::string());
        QVERIFY(previewSizeOf(camera).isEmpty());
        QVERIFY(camera.setPreviewSize(0) != 0);
    }

    void anotherStartEndsTheOneBefore()
    {
        FrameCollector first;
        FrameCollector second;
        ScriptedCamera camera(bringFrames);
        QVERIFY(camera.start(&first));
        QVERIFY(first.waitForFrames(2, patience));
        QVERIFY(camera.start(&second));
        const int count = first.count();
        QVERIFY(second.waitForFrames(5, patience));
        QCOMPARE(first.count(), count);
    }

    void turningOutlastsAStop()
    {
        FrameCollector sink;
        ScriptedCamera camera(bringFrames);
        QVERIFY(camera.start(&sink));
        camera.setFlip(true);
        camera.setMirror(true);
        camera.stop();
        QVERIFY(camera.start(&sink));
        QVERIFY(camera.flip() && camera.mirror());
        QVERIFY(sink.waitForFrames(2, patience));
        QCOMPARE(sink.lastFrame().pixelColor(0, 0), QColor(Qt::white));
    }

    void tellsTheDeviceAtOnceOfAnotherSize()
    {
        FrameCollector sink;
        ScriptedCamera camera(bringFramesWhenWoken);
        QVERIFY(camera.start(&sink));
        QTRY_COMPARE(sink.lastFrame().size(), QSize(640, 480));
        QCOMPARE(camera.setPreviewSize(0), 0);
        QCOMPARE(previewSizeOf(camera), QSize(320, 240));
        QTRY_COMPARE(sink.lastFrame().size(), QSize(320, 240));
    }
};

QTEST_GUILESS_MAIN(tst_CaptureCamera)
#include "tst_CaptureCamera.moc"
