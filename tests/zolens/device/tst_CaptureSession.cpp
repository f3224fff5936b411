#include "device/CaptureSession.h"
#include "support/fakev4l2/CameraBench.h"
#include "v4l2/CameraControls.h"
#include "v4l2/V4l2Device.h"

#include <QtTest>

#include <future>
#include <thread>

using namespace std::chrono_literals;
using zolens::CaptureEnd;
using zolens::CaptureSession;
using zolens::VideoFormat;

namespace {

const QSize small(320, 240);
const QSize large(1280, 720);

/// Of a device with one format, which is shown in the largest of its sizes.
std::unique_ptr<CaptureSession> sessionWith(const std::vector<QSize>& sizes,
                                            bool tryStillCapture = true)
{
    auto session = std::make_unique<CaptureSession>(nullptr);
    session->tryStillCapture = tryStillCapture;
    VideoFormat format;
    format.sizes = sizes;
    session->modes.offer({format});
    return session;
}

std::shared_ptr<FakeCamera> exposingCamera(int hundredMicroseconds)
{
    auto camera = std::make_shared<FakeCamera>();
    camera->controls.addInteger(V4L2_CID_EXPOSURE_ABSOLUTE, 1, 1000000, hundredMicroseconds);
    return camera;
}

/// Waits for a still picture in its life.
class Waiter final
{
public:
    explicit Waiter(CaptureSession& session)
        : still(session.still),
          waiting(std::async(std::launch::async, [this] { still.take(30s); }))
    {
        while (!still.isPending())
            std::this_thread::sleep_for(1ms);
    }
    ~Waiter() { still.fulfil(QImage()); }
    Q_DISABLE_COPY(Waiter)

private:
    zolens::StillRequest& still;
    std::future<void> waiting;
};

} // namespace

/// What tells a worker to go on or to do something else.
class tst_CaptureSession final : public QObject
{
    Q_OBJECT

private slots:
    void aFlowGoesOnInTheModeThatIsWanted()
    {
        const auto session = sessionWith({small, large});
        QVERIFY(!session->interruption(session->modes.preview()));
    }

    void aChoiceOfAnotherModeEndsTheFlow()
    {
        const auto session = sessionWith({small, large});
        const zolens::VideoMode running = session->modes.preview();
        QVERIFY(session->modes.selectSize(0));
        QVERIFY(session->interruption(running) == CaptureEnd::NewMode);
        QVERIFY(!session->interruption(session->modes.preview()));
    }

    void aStillInAnotherSizeEndsTheFlowForAMoment()
    {
        const auto session = sessionWith({small, large});
        QVERIFY(session->modes.selectSize(0));
        QVERIFY(session->modes.selectStillSize(1));
        QVERIFY(!session->interruption(session->modes.preview()));
        {
            const Waiter waiter(*session);
            QVERIFY(session->wantsLargeStill());
            QVERIFY(!session->wantsPreviewStill());
            QVERIFY(session->interruption(session->modes.preview()) == CaptureEnd::LargeStill);
        }
        QVERIFY(!session->interruption(session->modes.preview()));
    }

    void aStillOfThePreviewInterruptsNothing_data()
    {
        QTest::addColumn<bool>("tryStillCapture");
        QTest::addColumn<int>("stillSize");
        QTest::newRow("of the same size") << true << 0;
        QTest::newRow("where stills are those of the preview") << false << 1;
    }

    void aStillOfThePreviewInterruptsNothing()
    {
        QFETCH(bool, tryStillCapture);
        QFETCH(int, stillSize);
        const auto session = sessionWith({small, large}, tryStillCapture);
        QVERIFY(session->modes.selectSize(0));
        QVERIFY(session->modes.selectStillSize(stillSize));
        QVERIFY(!session->wantsPreviewStill());
        const Waiter waiter(*session);
        QVERIFY(session->wantsPreviewStill());
        QVERIFY(!session->wantsLargeStill());
        QVERIFY(!session->interruption(session->modes.preview()));
    }

    /// Even if that turns out to be another than the device has told.
    void aDeviceOfOneSizeHasNoOtherForStills()
    {
        const auto session = sessionWith({large});
        session->modes.correct(session->modes.preview(), {0, small});
        QVERIFY(!session->hasStillSizes());
        const Waiter waiter(*session);
        QVERIFY(session->wantsPreviewStill());
        QVERIFY(!session->interruption(session->modes.preview()));
    }

    void waitsLongerForStillsWithALongExposure_data()
    {
        QTest::addColumn<int>("exposure"); // in units of 100 microseconds
        QTest::addColumn<int>("patience"); // in milliseconds
        QTest::addColumn<int>("settlingFrames");
        QTest::newRow("short") << 200 << 5040 << 3;
        QTest::newRow("at the limit") << 3000 << 5600 << 3;
        QTest::newRow("long") << 3001 << 5601 << 1;
        QTest::newRow("of seconds") << 40000 << 13000 << 1;
        QTest::newRow("of a minute") << 600000 << 30000 << 1;
    }

    void waitsLongerForStillsWithALongExposure()
    {
        QFETCH(int, exposure);
        QFETCH(int, patience);
        QFETCH(int, settlingFrames);
        const CameraBench bench;
        bench.system->plug(bench.node(0), exposingCamera(exposure));
        CaptureSession session(nullptr);
        QCOMPARE(session.patienceForStill().count(), std::chrono::milliseconds::rep(5000));
        const auto device = std::make_shared<zolens::V4l2Device>(bench.system, bench.node(0));
        session.setControls(std::make_shared<zolens::CameraControls>(device));
        QCOMPARE(session.patienceForStill().count(), std::chrono::milliseconds::rep(patience));
        QCOMPARE(session.settlingFrames(0.04), settlingFrames);
        QCOMPARE(session.settlingFrames(1.0), 1);
    }

    void cancellingComesBeforeAllElse()
    {
        const auto session = sessionWith({small, large});
        const zolens::VideoMode running = session->modes.preview();
        QVERIFY(session->modes.selectSize(0));
        const Waiter waiter(*session);
        session->wake.cancel();
        QVERIFY(session->interruption(running) == CaptureEnd::Cancelled);
    }
};

QTEST_APPLESS_MAIN(tst_CaptureSession)
#include "tst_CaptureSession.moc"
