#include "FakeBox.h"
#include "gige/Aravis.h"
#include "gige/VisionCamera.h"
#include "support/CameraValues.h"
#include "support/PeerProcess.h"
#include "support/ProcessUse.h"
#include "support/TimeLimits.h"
#include "zolens/FrameCollector.h"

#include <zolens/MyCamera.h>

#include <QElapsedTimer>
#include <QtTest>

#include <memory>
#include <utility>

using namespace std::chrono_literals;
using zolens::VisionAddress;
using zolens::VisionCamera;

namespace {

constexpr auto patience = 20s;
constexpr auto comebackTime = 40s;

constexpr quint32 exposureAuto = 0x2000;
constexpr quint32 balanceAuto = 0x2004;
constexpr quint32 redRatio = 0x2010;
constexpr quint32 gammaNumber = 0x2024;

VisionAddress addressOf(const FakeBox& box)
{
    return {CWDevice_NetworkBox, box.address(), 0};
}

/// Small pictures, so that a slow machine keeps up.
FakeBox::Options smallBox(QByteArray description = FakeBox::ownDescription())
{
    FakeBox::Options options;
    options.description = FakeBox::withSensor(std::move(description), 800, 600);
    return options;
}

FakeBox::Options fullBox()
{
    return smallBox(FakeBox::fullDescription());
}

/// Another program that shows the box's pictures, until it is killed.
class OtherClient final
{
public:
    explicit OtherClient(const FakeBox& box)
    {
        process.setProcessChannelMode(QProcess::SeparateChannels);
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(QStringLiteral("arv-camera-test-0.8"), {QStringLiteral("-n"), box.address()});
    }

    bool isRunning() { return process.waitForReadyRead(20000); }
    void kill() { process.end(); }

private:
    PeerProcess process;
};

} // namespace

class tst_VisionFailures final : public QObject
{
    Q_OBJECT

private:
    static qint64 timeOf(const std::function<void()>& call)
    {
        QElapsedTimer timer;
        timer.start();
        call();
        return timer.elapsed();
    }

private slots:
    void doesNotOpenWhatIsNotThere_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("closed port") << "10.0.0.4";
        QTest::newRow("silent host") << "10.0.1.2";
        QTest::newRow("no such host") << "10.0.1.3";
        QTest::newRow("no route") << "192.0.2.1";
        QTest::newRow("broadcast") << "255.255.255.255";
        QTest::newRow("empty") << "";
        QTest::newRow("no number") << "camera";
        QTest::newRow("IPv6") << "::1";
        QTest::newRow("too large") << "10.0.0.256";
        QTest::newRow("other letters") << QString::fromUtf8("１０.0.0.2");
    }

    void doesNotOpenWhatIsNotThere()
    {
        QFETCH(QString, address);
        FakeBox box(smallBox());
        QVERIFY(box.start());
        MyCamera camera;
        bool opened = true;
        const qint64 time = timeOf([&] { opened = camera.open(CWDevice_NetworkBox, address); });
        QVERIFY(!opened);
        QVERIFY(!camera.camera);
        QVERIFY2(time < timelimits::start, qPrintable(QString::number(time)));
    }

    void doesNotOpenAFrozenBox()
    {
        FakeBox box(smallBox());
        QVERIFY(box.start());
        box.freeze();
        FrameCollector sink;
        VisionCamera camera(addressOf(box), false);
        bool opened = true;
        const qint64 time = timeOf([&] { opened = camera.start(&sink); });
        QVERIFY(!opened);
        QVERIFY(time < timelimits::start);
        box.thaw();
        QTRY_VERIFY_WITH_TIMEOUT(camera.start(&sink), 20000);
    }

    void leavesABusyBoxToItsUser()
    {
        FakeBox box(smallBox());
        QVERIFY(box.start());
        FrameCollector sink;
        VisionCamera user(addressOf(box), false);
        QVERIFY(user.start(&sink));
        FrameCollector otherSink;
        VisionCamera other(addressOf(box), false);
        bool opened = true;
        const qint64 time = timeOf([&] { opened = other.start(&otherSink); });
        QVERIFY(!opened);
        QVERIFY2(time < timelimits::start, qPrintable(QString::number(time)));
        QCOMPARE(int(otherSink.asked), 0);
        QVERIFY(sink.waitForFrames(10, patience));
    }

    void opensABoxWhoseUserWasKilled()
    {
        FakeBox box(smallBox());
        QVERIFY(box.start());
        OtherClient client(box);
        QVERIFY(client.isRunning());
        client.kill();
        FrameCollector sink;
        VisionCamera camera(addressOf(box), false);
        const qint64 time = timeOf([&] { QVERIFY(camera.start(&sink)); });
        QVERIFY(time < timelimits::start);
        QVERIFY(sink.waitForFrames(5, patience));
    }

    void staysQuickWhileTheBoxIsGone()
    {
        FakeBox box(fullBox());
        QVERIFY(box.start());
        FrameCollector sink;
        VisionCamera camera(addressOf(box), false);
        QVERIFY(camera.start(&sink));
        QVERIFY(sink.waitForFrames(5, patience));
        box.kill();
        int soonAfter = 0;
        for (int i = 0; i < 10; ++i) {
            double value = 0.0;
            std::vector<QSize> sizes;
            QVERIFY(timeOf([&] { camera.getProperty(CMProperty_ExposureTime, &value); }) <
                    timelimits::deviceCall);
            QVERIFY(timeOf([&] { camera.setProperty(CMProperty_Gamma, 100); }) <
                    timelimits::deviceCall);
            QVERIFY(timeOf([&] { camera.setAutoExposure(i % 2); }) < timelimits::deviceCall);
            QVERIFY(timeOf([&] { camera.previewSizes(&sizes); }) < timelimits::deviceCall);
            QVERIFY(timeOf([&] { camera.setPreviewSize(i % 2); }) < timelimits::deviceCall);
            QVERIFY(camera.isPropertySupported(CMProperty_ExposureTime));
            QVERIFY(!sizes.empty());
            QTest::qWait(400);
            if (i == 5)
                soonAfter = sink.count();
        }
        QCOMPARE(sink.count(), soonAfter);
        QVERIFY(timeOf([&] { QVERIFY(camera.captureStill().isNull()); }) < timelimits::deviceCall);
        QVERIFY(timeOf([&] { camera.stop(); }) < timelimits::stop);
    }

    void comesBackWithItsSettings()
    {
        FakeBox box(fullBox());
        QVERIFY(box.start());
        FrameCollector sink;
        VisionCamera camera(addressOf(box), false);
        QVERIFY(camera.start(&sink));
        camera.setPreviewSize(cameravalues::positionOf(camera, QSize(640, 480)));
        camera.setPreviewFormat(2);
        camera.setAutoExposure(false);
        camera.setWhiteBalanceMode(CWWhiteBalance_Manual);
        QCOMPARE(camera.setProperty(CMProperty_ExposureTime, 4321), 0);
        QCOMPARE(camera.setProperty(CMProperty_RedGain, 150), 0);
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastFrame().size(), QSize(640, 480), 20000);

        box.kill();
        QTest::qWait(1000);
        // What is set meanwhile counts too, once it is seen that the box is away.
        QTRY_VERIFY_WITH_TIMEOUT(camera.restarts() > 0, 10000);
        camera.setProperty(CMProperty_Gamma, 150);
        QVERIFY(box.start());
        QVERIFY(sink.waitForFrames(5, comebackTime));
        QCOMPARE(sink.lastFrame().size(), QSize(640, 480));
        QCOMPARE(box.registerValue(ARV_FAKE_CAMERA_REGISTER_PIXEL_FORMAT),
                 std::optional(quint32(ARV_PIXEL_FORMAT_MONO_8)));
        QCOMPARE(box.registerValue(ARV_FAKE_CAMERA_REGISTER_EXPOSURE_TIME_US),
                 std::optional(4321U));
        QCOMPARE(box.registerValue(exposureAuto), std::optional(0U));
        QCOMPARE(box.registerValue(balanceAuto), std::optional(0U));
        QCOMPARE(box.registerNumber(redRatio), std::optional(1.5F));
        QCOMPARE(box.registerNumber(gammaNumber), std::optional(1.5F));
        QCOMPARE(cameravalues::valueOf(camera, CMProperty_ExposureTime), 4321.0);
        QCOMPARE(camera.captureStill().size(), QSize(640, 480));
    }

    void comesBackInAutomaticModes()
    {
        FakeBox box(fullBox());
        QVERIFY(box.start());
        FrameCollector sink;
        VisionCamera camera(addressOf(box), false);
        QVERIFY(camera.start(&sink));
        QCOMPARE(camera.setProperty(CMProperty_ExposureTime, 4321), 0);
        camera.setAutoExposure(true);
        camera.setWhiteBalanceMode(CWWhiteBalance_Auto);
        QVERIFY(sink.waitForFrames(3, patience));
        box.kill();
        QTRY_VERIFY_WITH_TIMEOUT(camera.restarts() > 0, 10000);
        QVERIFY(box.start());
        QVERIFY(sink.waitForFrames(3, comebackTime));
        QCOMPARE(box.registerValue(exposureAuto), std::optional(2U));
        QCOMPARE(box.registerValue(balanceAuto), std::optional(2U));
    }

    void comesBackAfterAQuickRestart()
    {
        FakeBox box(smallBox());
        QVERIFY(box.start());
        FrameCollector sink;
        VisionCamera camera(addressOf(box), false);
        QVERIFY(camera.start(&sink));
        for (int i = 0; i < 2; ++i) {
            QVERIFY(sink.waitForFrames(5, comebackTime));
            box.kill();
            QVERIFY(box.start());
        }
        QVERIFY(sink.waitForFrames(20, comebackTime));
        QVERIFY(camera.restarts() >= 2);
    }

    void comesBackAfterABoxWasFrozen()
    {
        FakeBox box(smallBox());
        QVERIFY(box.start());
        FrameCollector sink;
        VisionCamera camera(addressOf(box), false);
        QVERIFY(camera.start(&sink));
        QVERIFY(sink.waitForFrames(5, patience));
        box.freeze();
        QTRY_VERIFY_WITH_TIMEOUT(camera.restarts() > 0, 10000);
        const int before = sink.count();
        QTest::qWait(300);
        QCOMPARE(sink.count(), before);
        box.thaw();
        QVERIFY(sink.waitForFrames(20, comebackTime));
    }

    void stopsInTimeWhateverTheBoxDoes_data()
    {
        QTest::addColumn<bool>("frozen");
        QTest::addColumn<int>("wait");
        QTest::newRow("killed, at once") << false << 0;
        QTest::newRow("killed, while it is looked for") << false << 2500;
        QTest::newRow("frozen, at once") << true << 0;
        QTest::newRow("frozen, while it is looked for") << true << 3000;
    }

    void stopsInTimeWhateverTheBoxDoes()
    {
        QFETCH(bool, frozen);
        QFETCH(int, wait);
        FakeBox box(smallBox());
        QVERIFY(box.start());
        FrameCollector sink;
        VisionCamera camera(addressOf(box), false);
        QVERIFY(camera.start(&sink));
        QVERIFY(sink.waitForFrames(3, patience));
        if (frozen)
            box.freeze();
        else
            box.kill();
        QTest::qWait(wait);
        QVERIFY(timeOf([&] { camera.stop(); }) < timelimits::stop);
        const int touches = sink.asked;
        QTest::qWait(300);
        QCOMPARE(int(sink.asked), touches);
    }

    void countsWhatTheNetworkLoses()
    {
        FakeBox::Options options =
            smallBox(FakeBox::withFormats(FakeBox::ownDescription(), {"Mono8"}));
        options.lostPacketsPerThousand = 5;
        FakeBox box(options);
        QVERIFY(box.start());
        FrameCollector sink;
        VisionCamera camera(addressOf(box), false);
        QVERIFY(camera.start(&sink));
        // Most large pictures lose a packet, most small ones come through.
        QTRY_VERIFY_WITH_TIMEOUT(camera.damagedFrames() > 5, 20000);
        camera.setPreviewSize(0);
        QVERIFY(sink.waitForFrames(10, patience));
        QCOMPARE(sink.lastFrame().size(), QSize(320, 240));
    }

    void leavesNothingBehindAfterLosses()
    {
        FakeBox box(smallBox());
        QVERIFY(box.start());
        const auto before = processuse::settledHoldings();
        {
            FrameCollector sink;
            VisionCamera camera(addressOf(box), false);
            QVERIFY(camera.start(&sink));
            QVERIFY(sink.waitForFrames(3, patience));
            box.kill();
            QTRY_VERIFY_WITH_TIMEOUT(camera.restarts() > 1, 15000);
        }
        box.kill();
        QCOMPARE(processuse::growthSince(before), QString());
    }
};

QTEST_GUILESS_MAIN(tst_VisionFailures)
#include "tst_VisionFailures.moc"
