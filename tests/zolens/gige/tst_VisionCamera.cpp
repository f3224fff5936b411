#include "FakeBox.h"
#include "ReferenceFrames.h"
#include "device/WakeUp.h"
#include "gige/NetworkBox.h"
#include "gige/VisionCamera.h"
#include "support/CameraValues.h"
#include "support/ProcessUse.h"
#include "support/TimeLimits.h"
#include "zolens/FrameCollector.h"

#include <zolens/MyCamera.h>

#include <QElapsedTimer>
#include <QtTest>

#include <algorithm>
#include <future>
#include <memory>

using namespace cameravalues;
using namespace std::chrono_literals;
using zolens::VisionAddress;
using zolens::VisionCamera;

namespace {

using Sizes = std::vector<QSize>;

constexpr auto patience = 20s;

} // namespace

class tst_VisionCamera final : public QObject
{
    Q_OBJECT

private:
    /// A box of its own, with what the options say.
    void startBox(const QByteArray& description)
    {
        FakeBox::Options options;
        options.description = description;
        box = std::make_unique<FakeBox>(options);
        QVERIFY(box->start());
    }

    /// Small pictures, so that a slow machine keeps up.
    void startSmallBox(const QByteArrayList& formats = {"BayerGR8", "RGB8", "Mono8", "Mono16"})
    {
        startBox(FakeBox::withSensor(FakeBox::withFormats(FakeBox::ownDescription(), formats), 1280,
                                     960));
    }

    VisionAddress address() const { return {CWDevice_NetworkBox, box->address(), 0}; }

    std::unique_ptr<FakeBox> box;

private slots:
    void cleanup() { box.reset(); }

    void opensABoxByItsAddress()
    {
        startSmallBox();
        MyCamera camera;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(camera.open(CWDevice_NetworkBox, box->address()));
        QVERIFY(timer.elapsed() < timelimits::start);
        QTRY_VERIFY_WITH_TIMEOUT(camera.frameRate() > 0, 20000);
        QCOMPARE(camera.deviceInfo().type, std::int32_t(CWDevice_NetworkBox));
        QCOMPARE(camera.deviceInfo().name, std::string("Aravis Fake"));
        QCOMPARE(camera.deviceInfo().address, std::string("10.0.0.2"));
        timer.restart();
        camera.close();
        QVERIFY(timer.elapsed() < timelimits::stop);
    }

    void namesABoxByPlainText_data()
    {
        QTest::addColumn<QByteArray>("vendor");
        QTest::addColumn<QByteArray>("model");
        QTest::addColumn<QString>("name");
        const QByteArray full(32, 'M');
        QTest::newRow("plain") << QByteArray("Optics") << QByteArray("Cam") << "Optics Cam";
        QTest::newRow("twice") << QByteArray("Optics") << QByteArray("OPTICS Cam") << "OPTICS Cam";
        QTest::newRow("of two lines")
            << QByteArray("Op\ntics\t") << QByteArray("\x1b[2JCam") << "Op tics [2JCam";
        QTest::newRow("not UTF-8")
            << QByteArray("M\xfcller") << QByteArray("C\xc3") << QString::fromUtf8("M�ller C�");
        QTest::newRow("without an end mark") << full << full << QString::fromLatin1(full);
        QTest::newRow("nothing") << QByteArray() << QByteArray() << "GigE Vision";
    }

    void namesABoxByPlainText()
    {
        QFETCH(QByteArray, vendor);
        QFETCH(QByteArray, model);
        QFETCH(QString, name);
        constexpr int length = 32;
        constexpr quint32 place = 0x2100;
        QByteArray description = FakeBox::withSensor(FakeBox::ownDescription(), 640, 480);
        description.replace("<Address>0x48</Address>", "<Address>0x2100</Address>");
        description.replace("<Address>0x68</Address>", "<Address>0x2120</Address>");
        startBox(description);
        {
            const zolens::AravisPointer<ArvCamera> other(
                arv_camera_new(qPrintable(box->address()), nullptr));
            QVERIFY(other);
            QByteArray bytes = vendor.leftJustified(length, 0) + model.leftJustified(length, 0);
            QVERIFY(arv_device_write_memory(arv_camera_get_device(other.get()), place,
                                            quint32(bytes.size()), bytes.data(), nullptr));
        }
        FrameCollector sink;
        VisionCamera camera(address(), false);
        QVERIFY(camera.start(&sink));
        QCOMPARE(QString::fromStdString(camera.deviceInfo().name), name);
    }

    void leavesTheBoxFreeForTheNext()
    {
        startSmallBox();
        for (int i = 0; i < 2; ++i) {
            FrameCollector sink;
            VisionCamera camera(address(), false);
            QVERIFY(camera.start(&sink));
            QVERIFY(sink.waitForFrames(3, patience));
            camera.stop();
            const int touches = sink.asked;
            QTest::qWait(100);
            QCOMPARE(int(sink.asked), touches);
        }
    }

    void showsTheWholeSensorFirst()
    {
        startBox({});
        FrameCollector sink;
        VisionCamera camera(address(), false);
        QVERIFY(camera.start(&sink));
        QCOMPARE(previewSizeOf(camera), QSize(2048, 2048));
        const Sizes sizes = sizesOf(camera);
        QCOMPARE(sizes.front(), QSize(320, 240));
        QCOMPARE(sizes.back(), QSize(2048, 2048));
        QVERIFY(std::count(sizes.begin(), sizes.end(), QSize(1920, 1080)) == 1);
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastFrame().size(), QSize(2048, 2048), 20000);
    }

    void offersOnlySizesThatTheSensorTakes()
    {
        QByteArray description = FakeBox::withSensor(FakeBox::ownDescription(), 640, 480);
        const int width = description.indexOf("<Integer Name=\"Width\"");
        QVERIFY(width > 0);
        const int step = description.indexOf("<Inc>1</Inc>", width);
        startBox(description.replace(step, 12, "<Inc>60</Inc>"));
        FrameCollector sink;
        VisionCamera camera(address(), false);
        QVERIFY(camera.start(&sink));
        // Every width is one more than a multiple of 60; none in common use is.
        QCOMPARE(sizesOf(camera), (Sizes{{601, 480}}));
        QVERIFY(sink.waitForFrames(1, patience));
        QCOMPARE(sink.lastFrame().size(), QSize(601, 480));
    }

    void followsTheChoiceOfASizeAboutTheMiddle()
    {
        startSmallBox();
        FrameCollector sink;
        VisionCamera camera(address(), false);
        QVERIFY(camera.start(&sink));
        QCOMPARE(camera.setPreviewSize(positionOf(camera, QSize(640, 480))), 0);
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastFrame().size(), QSize(640, 480), 20000);
        QCOMPARE(previewSizeOf(camera), QSize(640, 480));
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_WIDTH), std::optional(640U));
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_HEIGHT), std::optional(480U));
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_X_OFFSET), std::optional(320U));
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_Y_OFFSET), std::optional(240U));
        QCOMPARE(camera.setPreviewSize(positionOf(camera, QSize(1280, 720))), 0);
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastFrame().size(), QSize(1280, 720), 20000);
        QVERIFY(camera.setPreviewSize(100) != 0);
        QVERIFY(sink.waitForFrames(2, patience));
    }

    void decodesEveryFormat_data()
    {
        QTest::addColumn<QByteArrayList>("formats");
        QTest::addColumn<int>("number");
        QTest::addColumn<quint32>("code");
        QTest::newRow("Mono8") << QByteArrayList{"Mono8"} << 7 << quint32(ARV_PIXEL_FORMAT_MONO_8);
        QTest::newRow("Mono16") << QByteArrayList{"Mono16"} << 7
                                << quint32(ARV_PIXEL_FORMAT_MONO_16);
        QTest::newRow("Bayer") << QByteArrayList{"BayerGR8", "Mono8"} << 1
                               << quint32(ARV_PIXEL_FORMAT_BAYER_GR_8);
        QTest::newRow("RGB") << QByteArrayList{"RGB8", "Mono8", "Mono16"} << 0
                             << quint32(ARV_PIXEL_FORMAT_RGB_8_PACKED);
    }

    void decodesEveryFormat()
    {
        QFETCH(QByteArrayList, formats);
        QFETCH(int, number);
        QFETCH(quint32, code);
        startSmallBox(formats);
        FrameCollector sink;
        VisionCamera camera(address(), false);
        QVERIFY(camera.start(&sink));
        QCOMPARE(camera.previewFormat(), number);
        QCOMPARE(camera.setPreviewSize(positionOf(camera, QSize(320, 240))), 0);
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastFrame().size(), QSize(320, 240), 20000);
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_PIXEL_FORMAT), std::optional(code));
        QVERIFY(ReferenceFrames(code, QSize(320, 240)).contain(sink.lastFrame()));
    }

    void followsTheChoiceOfAFormat()
    {
        startSmallBox();
        FrameCollector sink;
        VisionCamera camera(address(), false);
        QVERIFY(camera.start(&sink));
        QCOMPARE(formatsOf(camera), (std::vector<int>{1, 0, 7}));
        QCOMPARE(camera.setPreviewSize(positionOf(camera, QSize(320, 240))), 0);
        QCOMPARE(camera.setPreviewFormat(positionOfFormat(camera, 7)), 0);
        QCOMPARE(camera.previewFormat(), 7);
        QTRY_COMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_PIXEL_FORMAT),
                     std::optional(quint32(ARV_PIXEL_FORMAT_MONO_8)));
        QVERIFY(sink.waitForFrames(5, patience));
        QVERIFY(sink.lastFrame().allGray());
        QCOMPARE(camera.setPreviewFormat(positionOfFormat(camera, 0)), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!sink.lastFrame().allGray(), 20000);
        QCOMPARE(sink.lastFrame().size(), QSize(320, 240));
        QVERIFY(camera.setPreviewFormat(3) != 0);
    }

    void turnsItsPictures()
    {
        startSmallBox({"Mono8"});
        FrameCollector sink;
        VisionCamera camera(address(), false);
        camera.setFlip(true);
        QVERIFY(camera.start(&sink));
        camera.setMirror(true);
        camera.setPreviewSize(positionOf(camera, QSize(320, 240)));
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastFrame().size(), QSize(320, 240), 20000);
        ReferenceFrames reference(ARV_PIXEL_FORMAT_MONO_8, QSize(320, 240));
        QVERIFY(reference.contain(sink.lastFrame().mirrored(true, true)));
    }

    void showsColorModes()
    {
        startSmallBox({"Mono8"});
        FrameCollector sink;
        VisionCamera camera(address(), false);
        QVERIFY(camera.start(&sink));
        camera.setPreviewSize(positionOf(camera, QSize(320, 240)));
        QCOMPARE(camera.setProperty(CMProperty_ColorMode, 2), 0);
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastFrame().size(), QSize(320, 240), 20000);
        QImage picture = sink.lastFrame().copy();
        picture.invertPixels();
        QVERIFY(ReferenceFrames(ARV_PIXEL_FORMAT_MONO_8, QSize(320, 240)).contain(picture));
    }

    void takesStillsOfThePreview()
    {
        startSmallBox();
        FrameCollector sink;
        VisionCamera camera(address(), false);
        QVERIFY(camera.start(&sink));
        QVERIFY(!camera.hasStillCapture());
        camera.setPreviewSize(positionOf(camera, QSize(640, 480)));
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastFrame().size(), QSize(640, 480), 20000);
        QCOMPARE(camera.captureStill().size(), QSize(640, 480));
        sink.refusing = true;
        QCOMPARE(camera.captureStill().size(), QSize(640, 480));
    }

    void takesLargerStillsByAShortSwitch()
    {
        startSmallBox();
        FrameCollector sink;
        VisionCamera camera(address(), true);
        QVERIFY(camera.start(&sink));
        QVERIFY(camera.hasStillCapture());
        camera.setPreviewSize(positionOf(camera, QSize(640, 480)));
        QTRY_COMPARE_WITH_TIMEOUT(sink.lastFrame().size(), QSize(640, 480), 20000);
        QCOMPARE(camera.setStillCaptureSize(positionOf(camera, QSize(1280, 960))), 0);
        QCOMPARE(camera.captureStill().size(), QSize(1280, 960));
        QVERIFY(sink.waitForFrames(3, patience));
        QCOMPARE(sink.lastFrame().size(), QSize(640, 480));
    }

    void takesLargerStillsWithALongExposure()
    {
        // Exposing takes all of the time between two pictures.
        QByteArray description = FakeBox::withSensor(FakeBox::ownDescription(), 800, 600);
        startBox(description.replace("<Address>0x120</Address>", "<Address>0x138</Address>"));
        FrameCollector sink;
        VisionCamera camera(address(), true);
        QVERIFY(camera.start(&sink));
        QCOMPARE(camera.setStillCaptureSize(0), 0);
        QCOMPARE(camera.setProperty(CMProperty_ExposureTime, 1.5e6), 0);
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_ACQUISITION_FRAME_PERIOD_US),
                 std::optional(1500000U));
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(camera.captureStill().size(), QSize(320, 240));
        // One picture to settle and the still, without one of the preview before.
        QVERIFY2(timer.elapsed() < 3000 + timelimits::slack,
                 qPrintable(QString::number(timer.elapsed())));
    }

    void leavesATriggeredBoxRunning()
    {
        startSmallBox();
        {
            zolens::AravisPointer<ArvCamera> other(
                arv_camera_new(qPrintable(box->address()), nullptr));
            QVERIFY(other);
            arv_camera_set_trigger(other.get(), "Software", nullptr);
        }
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_TRIGGER_MODE), std::optional(1U));
        FrameCollector sink;
        VisionCamera camera(address(), false);
        QVERIFY(camera.start(&sink));
        QVERIFY(sink.waitForFrames(3, patience));
    }

    // As when the thread of a camera that was given up reaches it after all.
    void connectsTwiceAtATime()
    {
        startSmallBox();
        FakeBox::Options options;
        options.address = QStringLiteral("10.0.0.3");
        FakeBox second(options);
        QVERIFY(second.start());
        const auto connect = [](const QString& host) {
            zolens::WakeUp wake;
            const auto deadline = zolens::StreamClock::now() + std::chrono::seconds(10);
            return zolens::connectToBox(host, deadline, wake) != nullptr;
        };
        for (int i = 0; i < 20; ++i) {
            auto other = std::async(std::launch::async, connect, second.address());
            QVERIFY(connect(box->address()));
            QVERIFY(other.get());
        }
    }

    void opensManyTimesWithoutLeaking()
    {
        startSmallBox();
        const auto cycle = [this] {
            FrameCollector sink;
            VisionCamera camera(address(), false);
            QVERIFY(camera.start(&sink));
            camera.setPreviewSize(0);
            QVERIFY(sink.waitForFrames(2, patience));
        };
        for (int i = 0; i < 3; ++i)
            cycle();
        const auto before = processuse::settledHoldings();
        for (int i = 0; i < 25; ++i)
            cycle();
        QCOMPARE(processuse::growthSince(before), QString());
    }
};

QTEST_GUILESS_MAIN(tst_VisionCamera)
#include "tst_VisionCamera.moc"
