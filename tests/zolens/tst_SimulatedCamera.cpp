#include "FrameCollector.h"
#include "PixelMeasures.h"
#include "simulated/SimulatedCamera.h"
#include "support/CameraValues.h"
#include "support/NoNewThread.h"
#include "support/TimeLimits.h"

#include <QtTest>

#include <algorithm>
#include <limits>

using zolens::SimulatedCamera;
using namespace cameravalues;
using namespace measures;

namespace {

const std::vector<tagCMProperty> everyProperty{CMProperty_Brightness,
                                               CMProperty_Contrast,
                                               CMProperty_Hue,
                                               CMProperty_Saturation,
                                               CMProperty_Gamma,
                                               CMProperty_Sharpness,
                                               CMProperty_Gain,
                                               CMProperty_ExposureTarget,
                                               CMProperty_ExposureTime,
                                               CMProperty_RedGain,
                                               CMProperty_GreenGain,
                                               CMProperty_BlueGain,
                                               CMProperty_ColorTemperature,
                                               CMProperty_ColorMode,
                                               CMProperty_Denoise};

QElapsedTimer started()
{
    QElapsedTimer timer;
    timer.start();
    return timer;
}

} // namespace

class tst_SimulatedCamera final : public QObject
{
    Q_OBJECT

private slots:
    void offersItsSizesAndFormats()
    {
        SimulatedCamera camera(true);
        std::vector<QSize> sizes{QSize(1, 1)};
        camera.previewSizes(&sizes);
        QCOMPARE(sizes, (std::vector<QSize>{
                            {640, 480}, {1280, 720}, {1920, 1080}, {2592, 1944}, {3840, 2160}}));
        std::vector<int> formats{7};
        camera.previewFormats(&formats);
        QCOMPARE(formats, (std::vector<int>{0, 5, 19}));
        std::vector<int> frequencies;
        camera.powerFrequencies(&frequencies);
        QCOMPARE(frequencies, (std::vector<int>{0, 1, 2, 3}));
        std::vector<int> modes;
        camera.whiteBalanceModes(&modes);
        QCOMPARE(modes, (std::vector<int>{0, 1, 2}));
    }

    void supportsEveryPropertyWithADefaultInsideItsRange()
    {
        SimulatedCamera camera(true);
        for (const tagCMProperty id : everyProperty) {
            QVERIFY(camera.isPropertySupported(id));
            const Range range = rangeOf(camera, id);
            QVERIFY(range.lowest < range.highest);
            QVERIFY(range.step > 0);
            const double standard = camera.resetProperty(id);
            QVERIFY(standard >= range.lowest && standard <= range.highest);
            QCOMPARE(valueOf(camera, id), standard);
        }
    }

    void whereNoThreadIsLeftItDoesNotStart()
    {
        FrameCollector sink;
        SimulatedCamera camera(true);
        {
            const NoNewThread limit;
            QVERIFY(!camera.start(&sink));
        }
        QVERIFY(camera.captureStill().isNull());
        QVERIFY(camera.start(&sink));
        QVERIFY(sink.waitForFrames(1, std::chrono::seconds(20)));
    }

    void holdsValuesAtTheEndsOfTheirRange()
    {
        SimulatedCamera camera(true);
        for (const tagCMProperty id : everyProperty) {
            const Range range = rangeOf(camera, id);
            QCOMPARE(camera.setProperty(id, range.highest + 1000000), 0);
            QCOMPARE(valueOf(camera, id), range.highest);
            QCOMPARE(camera.setProperty(id, -1e300), 0);
            QCOMPARE(valueOf(camera, id), range.lowest);
        }
    }

    void refusesValuesThatAreNoNumber()
    {
        SimulatedCamera camera(true);
        QVERIFY(camera.setProperty(CMProperty_Gain, std::numeric_limits<double>::quiet_NaN()) != 0);
        QCOMPARE(valueOf(camera, CMProperty_Gain), 100.0);
    }

    void refusesUnknownProperties()
    {
        SimulatedCamera camera(true);
        const auto unknown = static_cast<tagCMProperty>(17);
        double value = 4.5;
        QVERIFY(!camera.isPropertySupported(unknown));
        QVERIFY(camera.getProperty(unknown, &value) != 0);
        QCOMPARE(value, 4.5);
        QVERIFY(camera.setProperty(unknown, 1) != 0);
        QCOMPARE(camera.resetProperty(unknown), 0.0);
    }

    void listsTheValuesOfTheColorMode()
    {
        SimulatedCamera camera(true);
        std::vector<int> values;
        camera.propertyValues(&values, CMProperty_ColorMode);
        QCOMPARE(values, (std::vector<int>{0, 1, 2}));
        camera.propertyValues(&values, CMProperty_Gain);
        QVERIFY(values.empty());
    }

    void keepsWhatIsSet()
    {
        SimulatedCamera camera(true);
        camera.setFlip(true);
        camera.setMirror(true);
        camera.setPowerFrequency(2);
        QVERIFY(camera.flip());
        QVERIFY(camera.mirror());
        QCOMPARE(camera.powerFrequency(), 2);
        camera.setPowerFrequency(4);
        QCOMPARE(camera.powerFrequency(), 2);
        QCOMPARE(camera.setPreviewFormat(2), 0);
        QCOMPARE(camera.previewFormat(), 19);
        QVERIFY(camera.setPreviewFormat(3) != 0);
        QVERIFY(camera.setPreviewFormat(-1) != 0);
        QCOMPARE(camera.previewFormat(), 19);
    }

    void framesComeInTheSizeSelected()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        QVERIFY(camera.start(&frames));
        QVERIFY(frames.waitForFrames(1));
        QCOMPARE(frames.lastFrame().size(), QSize(1920, 1080));
        QCOMPARE(camera.setPreviewSize(0), 0);
        QVERIFY(frames.waitForFrames(2));
        QCOMPARE(frames.lastFrame().size(), QSize(640, 480));
        QCOMPARE(previewSizeOf(camera), QSize(640, 480));
    }

    void propertiesActOnTheFramesThatFollow()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(1));
        camera.setProperty(CMProperty_ColorMode, 1);
        QVERIFY(frames.waitForFrames(2));
        const QImage grey = frames.lastFrame();
        for (int x = 0; x < grey.width(); ++x) {
            const QRgb pixel = grey.pixel(x, 300);
            QVERIFY(qRed(pixel) == qGreen(pixel) && qGreen(pixel) == qBlue(pixel));
        }
    }

    void twoCamerasMakeTheSameFirstFrame()
    {
        FrameCollector framesOfOther;
        FrameCollector framesOfOne;
        SimulatedCamera one(true);
        SimulatedCamera other(false);
        one.setPreviewSize(0);
        other.setPreviewSize(0);
        one.start(&framesOfOne);
        other.start(&framesOfOther);
        QVERIFY(framesOfOne.waitForFrames(3));
        QVERIFY(framesOfOther.waitForFrames(1));
        QCOMPARE(framesOfOne.firstFrame(), framesOfOther.firstFrame());
        QVERIFY(framesOfOne.firstFrame() != framesOfOne.lastFrame());
    }

    void automaticExposureArrivesAtTheTarget()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.setProperty(CMProperty_ExposureTarget, 150);
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(40));
        const double mean = meanOf(frames.lastFrame()).luminance();
        QVERIFY2(std::abs(mean - 150) < 8, qPrintable(QString::number(mean)));
    }

    void manualExposureStaysAsItIs()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.setAutoExposure(false);
        camera.setProperty(CMProperty_ExposureTime, 2000);
        camera.setProperty(CMProperty_Gain, 100);
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(10));
        QCOMPARE(valueOf(camera, CMProperty_ExposureTime), 2000.0);
        QCOMPARE(valueOf(camera, CMProperty_Gain), 100.0);
        QVERIFY(meanOf(frames.lastFrame()).luminance() < 140);
    }

    void automaticWhiteBalanceConvergesAndManualDoesNot()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.setProperty(CMProperty_ColorTemperature, 8000);
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(5));
        QCOMPARE(camera.whiteBalanceMode(), int{CWWhiteBalance_Manual});
        QCOMPARE(valueOf(camera, CMProperty_ColorTemperature), 8000.0);
        QVERIFY(castOf(frames.lastFrame()) > 20);
        camera.setWhiteBalanceMode(CWWhiteBalance_Auto);
        QVERIFY(frames.waitForFrames(40));
        QCOMPARE(camera.whiteBalanceMode(), int{CWWhiteBalance_Auto});
        QVERIFY2(castOf(frames.lastFrame()) < 2.5,
                 qPrintable(QString::number(castOf(frames.lastFrame()))));
    }

    void onePushBalancesOnceAndIsManualAfterwards()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.setProperty(CMProperty_ColorTemperature, 3000);
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(1));
        camera.setWhiteBalanceMode(CWWhiteBalance_OnePush);
        QVERIFY(frames.waitForFrames(2));
        QVERIFY2(castOf(frames.lastFrame()) < 2.5,
                 qPrintable(QString::number(castOf(frames.lastFrame()))));
        QCOMPARE(camera.whiteBalanceMode(), int{CWWhiteBalance_Manual});
        camera.setProperty(CMProperty_ColorTemperature, 8000);
        QVERIFY(frames.waitForFrames(3));
        QVERIFY(castOf(frames.lastFrame()) > 20);
    }

    void ignoresAnUnknownWhiteBalanceMode()
    {
        SimulatedCamera camera(true);
        camera.setWhiteBalanceMode(CWWhiteBalance_Auto);
        camera.setWhiteBalanceMode(9);
        QCOMPARE(camera.whiteBalanceMode(), int{CWWhiteBalance_Auto});
    }

    void stillPicturesAreLargerThanThePreview()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        QVERIFY(camera.hasStillCapture());
        std::vector<QSize> sizes;
        camera.stillSizes(&sizes);
        QCOMPARE(sizes.back(), QSize(3840, 2160));
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(1));
        QCOMPARE(camera.captureStill().size(), QSize(3840, 2160));
        QCOMPARE(camera.setStillCaptureSize(1), 0);
        const QImage still = camera.captureStill();
        QCOMPARE(still.size(), QSize(2592, 1944));
        QSize size;
        camera.stillSize(&size);
        QCOMPARE(size, QSize(2592, 1944));
        QVERIFY(camera.setStillCaptureSize(3) != 0);
    }

    void withoutAStillPathAStillIsThePreview()
    {
        FrameCollector frames;
        SimulatedCamera camera(false);
        camera.setPreviewSize(1);
        QVERIFY(!camera.hasStillCapture());
        std::vector<QSize> sizes{QSize(1, 1)};
        camera.stillSizes(&sizes);
        QVERIFY(sizes.empty());
        QSize size;
        camera.stillSize(&size);
        QCOMPARE(size, QSize(1280, 720));
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(1));
        QCOMPARE(camera.captureStill().size(), QSize(1280, 720));
    }

    void noStillPictureWhileStopped()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        QVERIFY(camera.captureStill().isNull());
        camera.start(&frames);
        camera.stop();
        QVERIFY(camera.captureStill().isNull());
    }

    void aLongExposureSlowsTheFrames()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.setAutoExposure(false);
        camera.setProperty(CMProperty_ExposureTime, 100000);
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(2)); // The first one has to make the scene.
        const QElapsedTimer timer = started();
        QVERIFY(frames.waitForFrames(5));
        QVERIFY2(timer.elapsed() >= 480, qPrintable(QString::number(timer.elapsed())));
    }

    void smallFramesComeAtSixtyASecondAtMost()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(2));
        const QElapsedTimer timer = started();
        QVERIFY(frames.waitForFrames(60));
        const qint64 elapsed = timer.elapsed();
        QVERIFY2(elapsed >= 950, qPrintable(QString::number(elapsed)));
    }

    void startAndStopDoNotKeepTheCallerWaiting()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(4);
        QElapsedTimer timer = started();
        QVERIFY(camera.start(&frames));
        QVERIFY(timer.elapsed() < timelimits::deviceCall);
        QVERIFY(frames.waitForFrames(1));
        timer.start();
        camera.stop();
        QVERIFY2(timer.elapsed() < timelimits::stop, qPrintable(QString::number(timer.elapsed())));
    }

    void stopCutsALongExposureShort()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.setAutoExposure(false);
        camera.setProperty(CMProperty_ExposureTime, 250000);
        qint64 stopping = 0;
        // With every exposure to its end it would take four seconds.
        for (int i = 0; i < 16; ++i) {
            camera.start(&frames);
            QVERIFY(frames.waitForFrames(1));
            const QElapsedTimer timer = started();
            camera.stop();
            stopping += timer.elapsed();
        }
        QVERIFY2(stopping < timelimits::atOnce, qPrintable(QString::number(stopping)));
    }

    void theSinkIsNotTouchedAfterStop()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(3));
        camera.stop();
        const int asked = frames.asked;
        const int delivered = frames.count();
        QTest::qWait(100);
        QCOMPARE(int(frames.asked), asked);
        QCOMPARE(frames.count(), delivered);
        camera.stop();
    }

    void startsAgain()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        camera.start(&frames);
        QVERIFY(frames.waitForFrames(2));
        camera.stop();
        QVERIFY(camera.start(&frames));
        QVERIFY(frames.waitForFrames(2));
    }

    void refusedFramesAreSkipped()
    {
        FrameCollector frames;
        SimulatedCamera camera(true);
        camera.setPreviewSize(0);
        frames.refusing = true;
        camera.start(&frames);
        QTRY_VERIFY(frames.asked > 1);
        QCOMPARE(frames.count(), 0);
        frames.refusing = false;
        QVERIFY(frames.waitForFrames(1));
    }

private:
    /// The largest difference between the channels in the empty field.
    static double castOf(const QImage& frame)
    {
        const Mean mean = meanOf(frame, pixelsOf(frame, QRectF(200, -90, 90, 60)));
        const auto [least, most] = std::minmax({mean.red, mean.green, mean.blue});
        return most - least;
    }
};

QTEST_GUILESS_MAIN(tst_SimulatedCamera)
#include "tst_SimulatedCamera.moc"
