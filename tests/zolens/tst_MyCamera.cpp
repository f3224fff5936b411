#include "support/NoNewThread.h"
#include "support/TimeLimits.h"

#include <zolens/MyCamera.h>

#include <QtTest>

#include <mutex>
#include <set>
#include <thread>

namespace {

constexpr int simulated = CWDevice_Simulated;

/// Counts what reaches the thread that it lives on.
class Viewer final : public QObject
{
public:
    explicit Viewer(MyCamera& camera)
    {
        connect(&camera, &MyCamera::getImage, this, [this](const QImage& image) {
            ++frames;
            newest = image;
        });
    }

    int frames = 0;
    QImage newest;
};

bool openSmall(MyCamera& camera)
{
    const bool opened = camera.open(simulated, 0, true);
    return opened && camera.camera->setPreviewSize(0) == 0;
}

} // namespace

class tst_MyCamera final : public QObject
{
    Q_OBJECT

private slots:
    void isClosedAtFirst()
    {
        MyCamera camera;
        QVERIFY(!camera.camera);
        QVERIFY(!camera.pause);
        QVERIFY(camera.snap().isNull());
        QCOMPARE(camera.frameRate(), 0.0F);
        QVERIFY(camera.getFormatedProperty(CMProperty_Gain, false).isEmpty());
        camera.close();
        camera.stopRecording();
    }

    void opensAndRecordsNothingWhereNoThreadIsLeft()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("video.mp4"));
        MyCamera camera;
        {
            const NoNewThread limit;
            QVERIFY(!camera.open(simulated, 0, true));
            QVERIFY(!camera.camera);
        }
        QVERIFY(openSmall(camera));
        {
            const NoNewThread limit;
            QVERIFY(!camera.startRecording(path));
        }
        QVERIFY(!QFile::exists(path));
        QVERIFY(camera.startRecording(path));
    }

    void refusesDevicesThatAreNotThere_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("index");
        QTest::newRow("other index") << simulated << 1;
        QTest::newRow("negative index") << simulated << -1;
        QTest::newRow("no class") << 99 << 0;
        QTest::newRow("none") << -1 << -1;
    }

    void refusesDevicesThatAreNotThere()
    {
        QFETCH(int, type);
        QFETCH(int, index);
        MyCamera camera;
        QVERIFY(!camera.open(type, index, true));
        QVERIFY(!camera.camera);
    }

    void refusesAddressesThatLeadNowhere_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("address");
        QTest::newRow("of no network class") << simulated << QStringLiteral("127.0.0.1");
        QTest::newRow("empty stream") << int{CWDevice_NetworkStream} << QString();
        QTest::newRow("no stream there")
            << int{CWDevice_NetworkStream} << QStringLiteral("rtsp://127.0.0.1:1/none");
    }

    void refusesAddressesThatLeadNowhere()
    {
        QFETCH(int, type);
        QFETCH(QString, address);
        MyCamera camera;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!camera.open(type, address));
        QVERIFY(!camera.camera);
        QVERIFY(timer.elapsed() < timelimits::start);
    }

    void framesComeFromAnotherThread()
    {
        MyCamera camera;
        std::mutex mutex;
        std::set<std::thread::id> threads;
        connect(
            &camera, &MyCamera::getImage, &camera,
            [&](const QImage&) {
                const std::lock_guard lock(mutex);
                threads.insert(std::this_thread::get_id());
            },
            Qt::DirectConnection);
        QVERIFY(openSmall(camera));
        QTRY_VERIFY(camera.frameRate() > 0.0F);
        QTest::qWait(100);
        camera.close();
        QCOMPARE(threads.size(), std::size_t{1});
        QVERIFY(*threads.begin() != std::this_thread::get_id());
    }

    void framesReachTheWindowThread()
    {
        MyCamera camera;
        Viewer viewer(camera);
        QVERIFY(openSmall(camera));
        QTRY_VERIFY(viewer.frames >= 5 && viewer.newest.width() == 640);
        QCOMPARE(viewer.newest.format(), QImage::Format_RGB32);
    }

    void describesTheDeviceWhileItIsOpen()
    {
        MyCamera camera;
        QVERIFY(camera.open(simulated, 0, false));
        QCOMPARE(camera.deviceInfo().type, std::int32_t{simulated});
        QCOMPARE(camera.deviceInfo().name, std::string("Simulated microscope"));
        camera.close();
        QVERIFY(!camera.camera);
        QVERIFY(camera.deviceInfo().name.empty());
    }

    void pausedEmitsNothing()
    {
        MyCamera camera;
        Viewer viewer(camera);
        QVERIFY(openSmall(camera));
        QTRY_VERIFY(viewer.frames > 2);
        camera.pause = true;
        QTest::qWait(100);
        const int frames = viewer.frames;
        QTest::qWait(200);
        QCOMPARE(viewer.frames, frames);
        camera.pause = false;
        QTRY_VERIFY(viewer.frames > frames + 2);
    }

    void countsFramesPerSecond()
    {
        MyCamera camera;
        QVERIFY(openSmall(camera));
        // As soon as the machine is free for a second.
        const auto isFull = [&camera] { return camera.frameRate() > 30; };
        QVERIFY2(QTest::qWaitFor(isFull, 20000), qPrintable(QString::number(camera.frameRate())));
        QTest::qWait(1200);
        QVERIFY2(camera.frameRate() < 66, qPrintable(QString::number(camera.frameRate())));
        camera.close();
        QCOMPARE(camera.frameRate(), 0.0F);
    }

    void aBusyWindowGetsTheNewestFrameNext()
    {
        MyCamera camera;
        Viewer viewer(camera);
        QVERIFY(openSmall(camera));
        camera.camera->setAutoExposure(false);
        QTRY_VERIFY(viewer.frames > 2 && viewer.newest.width() == 640);
        camera.camera->setProperty(CMProperty_Contrast, 0);
        QTest::qSleep(400); // The window does nothing meanwhile.
        const int before = viewer.frames;
        QTRY_VERIFY(viewer.frames >= before + 3);
        const QRgb pixel = viewer.newest.pixel(100, 100);
        QVERIFY(qAbs(qGreen(pixel) - 128) < 12);
    }

    void snapTakesTheStillSize()
    {
        MyCamera camera;
        QVERIFY(camera.open(simulated, 0, true));
        QCOMPARE(camera.snap().size(), QSize(3840, 2160));
        QVERIFY(camera.open(simulated, 0, false));
        QCOMPARE(camera.snap().size(), QSize(1920, 1080));
    }

    void formatsPropertiesWithTheirUnits()
    {
        MyCamera camera;
        QVERIFY(camera.open(simulated, 0, true));
        camera.camera->setAutoExposure(false);
        camera.camera->setProperty(CMProperty_ExposureTime, 12500);
        camera.camera->setProperty(CMProperty_Gain, 150);
        camera.camera->setProperty(CMProperty_ColorTemperature, 5000);
        QCOMPARE(camera.getFormatedProperty(CMProperty_ExposureTime, false),
                 QStringLiteral("12.5 ms"));
        QCOMPARE(camera.getFormatedProperty(CMProperty_Gain, false), QStringLiteral("x 1.5"));
        QCOMPARE(camera.getFormatedProperty(CMProperty_ColorTemperature, true),
                 QStringLiteral("5000 K"));
    }

    void recordingWithoutAPathFails()
    {
        MyCamera camera;
        QVERIFY(!camera.startRecording(QString()));
        QVERIFY(openSmall(camera));
        QVERIFY(!camera.startRecording(QString()));
        camera.stopRecording();
    }

    void opensAnotherDeviceInPlaceOfTheFirst()
    {
        MyCamera camera;
        Viewer viewer(camera);
        QVERIFY(openSmall(camera));
        QVERIFY(camera.open(simulated, 0, true));
        QTRY_COMPARE(viewer.newest.width(), 1920);
        QVERIFY(!camera.open(simulated, 5, true));
        QVERIFY(!camera.camera);
    }

    void closesWithoutDelay()
    {
        MyCamera camera;
        QVERIFY(camera.open(simulated, 0, true));
        camera.camera->setPreviewSize(4);
        QTest::qWait(300);
        QElapsedTimer timer;
        timer.start();
        camera.close();
        QVERIFY2(timer.elapsed() < timelimits::stop, qPrintable(QString::number(timer.elapsed())));
    }

    void aKeptFrameOutlivesTheCamera()
    {
        QImage kept;
        {
            MyCamera camera;
            Viewer viewer(camera);
            QVERIFY(openSmall(camera));
            QTRY_VERIFY(viewer.frames > 3 && viewer.newest.width() == 640);
            kept = viewer.newest;
        }
        const QImage copy = kept.copy();
        QTest::qWait(50);
        QCOMPARE(kept, copy);
    }
};

QTEST_GUILESS_MAIN(tst_MyCamera)
#include "tst_MyCamera.moc"
