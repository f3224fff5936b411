#include "PixelMeasures.h"
#include "simulated/DriftingParticles.h"
#include "simulated/ImagePipeline.h"
#include "simulated/MicroscopeImager.h"

#include <QtTest>

#include <algorithm>

using zolens::FrameFormat;
using zolens::ImagePipeline;
using zolens::MicroscopeImager;
using zolens::SimulatedSettings;
using namespace measures;

namespace {

const QRectF background(200, -90, 90, 60);
const QRectF greyPatch(814, 428, 30, 30);
const QRectF redPatch(480, 430, 30, 30);
const QRectF ribs(420, 200, 200, 100);

SimulatedSettings plainSettings()
{
    SimulatedSettings settings;
    settings.size = QSize(1280, 720);
    settings.setValue(CMProperty_ExposureTime, 10000);
    return settings;
}

/// One of them with a property changed.
SimulatedSettings with(tagCMProperty id, double value)
{
    SimulatedSettings settings = plainSettings();
    settings.setValue(id, value);
    return settings;
}

QImage frameOf(MicroscopeImager& imager, const SimulatedSettings& settings, quint64 number = 0)
{
    QImage frame(settings.size, QImage::Format_RGB32);
    imager.render(settings, number, frame);
    return frame;
}

QImage frameOf(const SimulatedSettings& settings, quint64 number = 0)
{
    MicroscopeImager imager;
    return frameOf(imager, settings, number);
}

Mean meanIn(const QImage& image, const QRectF& micrometres)
{
    return meanOf(image, pixelsOf(image, micrometres));
}

bool isGrey(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qRed(pixel) != qGreen(pixel) || qGreen(pixel) != qBlue(pixel))
                return false;
        }
    }
    return true;
}

int largestDifference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            largest = std::max(largest, std::abs(qGreen(a.pixel(x, y)) - qGreen(b.pixel(x, y))));
    }
    return largest;
}

} // namespace

class tst_MicroscopeImager final : public QObject
{
    Q_OBJECT

private slots:
    void sameSettingsAndNumberGiveTheSameFrame()
    {
        MicroscopeImager busy;
        frameOf(busy, with(CMProperty_Gamma, 150), 3);
        frameOf(busy, plainSettings(), 50);
        SimulatedSettings small = plainSettings();
        small.size = QSize(640, 480);
        frameOf(busy, small, 7);
        frameOf(busy, plainSettings(), 51);
        QCOMPARE(frameOf(busy, plainSettings(), 99), frameOf(plainSettings(), 99));
    }

    void sameFrameWithFiltersThatReachOverPixels()
    {
        SimulatedSettings settings = with(CMProperty_Sharpness, 90);
        settings.format = FrameFormat::Mjpeg;
        MicroscopeImager busy;
        frameOf(busy, settings, 1);
        frameOf(busy, settings, 40);
        QCOMPARE(frameOf(busy, settings, 80), frameOf(settings, 80));
    }

    void framesCarryNoiseThatChanges()
    {
        MicroscopeImager imager;
        const QImage first = frameOf(imager, plainSettings(), 0);
        const QImage second = frameOf(imager, plainSettings(), 1);
        const double spread = spreadOfDifference(first, second, pixelsOf(first, background));
        QVERIFY2(spread > 1.0 && spread < 4.0, qPrintable(QString::number(spread)));
    }

    void somethingMoves()
    {
        MicroscopeImager imager;
        const QImage first = frameOf(imager, plainSettings(), 0);
        const QImage later = frameOf(imager, plainSettings(), 60);
        QVERIFY(largestDifference(first, later) > 50);
    }

    void aCancelledImagerMakesNoFrame()
    {
        MicroscopeImager imager;
        const SimulatedSettings settings = plainSettings();
        QImage frame(settings.size, QImage::Format_RGB32);
        QVERIFY(imager.render(settings, 0, frame));
        imager.cancel();
        QVERIFY(!imager.render(settings, 1, frame));
        QVERIFY(!imager.render(with(CMProperty_Gamma, 150), 2, frame));
    }

    void developingInBandsLeavesNoSeams()
    {
        SimulatedSettings settings = with(CMProperty_Sharpness, 100);
        settings.format = FrameFormat::Mjpeg;
        settings.setValue(CMProperty_Denoise, 0);
        MicroscopeImager imager;
        const QImage frame = frameOf(imager, settings);
        QImage whole = imager.sceneOf(settings.size).image();
        ImagePipeline(settings).develop(whole);
        const QRect strip = stripWithoutParticles(frame);
        QVERIFY(!strip.isEmpty());
        const int noise = 6; // Four even parts of a spread of 1.5 reach no further.
        QVERIFY(largestDifference(frame.copy(strip), whole.copy(strip)) <= noise);
    }

    void pixelsAreOpaque()
    {
        SimulatedSettings settings = with(CMProperty_ExposureTime, 4000);
        settings.setValue(CMProperty_Gain, 400);
        const QImage frame = frameOf(settings);
        for (int y = 0; y < frame.height(); y += 7) {
            for (int x = 0; x < frame.width(); x += 5)
                QCOMPARE(reinterpret_cast<const QRgb*>(frame.constScanLine(y))[x] >> 24, 0xffU);
        }
    }

    void twiceTheLightGivesTheValueOfTheToneCurve_data()
    {
        QTest::addColumn<int>("property");
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("doubled");
        QTest::newRow("exposure") << int{CMProperty_ExposureTime} << 10000.0 << 20000.0;
        QTest::newRow("gain") << int{CMProperty_Gain} << 100.0 << 200.0;
        QTest::newRow("green") << int{CMProperty_GreenGain} << 100.0 << 200.0;
    }

    void twiceTheLightGivesTheValueOfTheToneCurve()
    {
        QFETCH(int, property);
        QFETCH(double, value);
        QFETCH(double, doubled);
        const auto id = static_cast<tagCMProperty>(property);
        const double once = meanIn(frameOf(with(id, value)), greyPatch).green;
        const double twice = meanIn(frameOf(with(id, doubled)), greyPatch).green;
        QVERIFY2(std::abs(twice / once - std::pow(2.0, 1 / 2.2)) < 0.03,
                 qPrintable(QString::number(twice / once)));
    }

    void aChannelGainActsOnItsChannelAlone()
    {
        const Mean plain = meanIn(frameOf(plainSettings()), greyPatch);
        const Mean red = meanIn(frameOf(with(CMProperty_RedGain, 150)), greyPatch);
        const Mean blue = meanIn(frameOf(with(CMProperty_BlueGain, 150)), greyPatch);
        const double factor = std::pow(1.5, 1 / 2.2);
        QVERIFY(std::abs(red.red / plain.red - factor) < 0.03);
        QVERIFY(std::abs(red.green - plain.green) < 0.5);
        QVERIFY(std::abs(red.blue - plain.blue) < 0.5);
        QVERIFY(std::abs(blue.blue / plain.blue - factor) < 0.03);
        QVERIFY(std::abs(blue.red - plain.red) < 0.5);
    }

    void anAssumedHotterLampMakesThePictureWarmer()
    {
        const Mean warm = meanIn(frameOf(with(CMProperty_ColorTemperature, 8000)), greyPatch);
        const Mean cold = meanIn(frameOf(with(CMProperty_ColorTemperature, 3000)), greyPatch);
        QVERIFY(warm.red > warm.blue + 10);
        QVERIFY(cold.blue > cold.red + 10);
    }

    void tooMuchLightIsWhite()
    {
        const Mean mean = meanIn(frameOf(with(CMProperty_ExposureTime, 250000)), background);
        QVERIFY(mean.red > 252 && mean.green > 252 && mean.blue > 252);
    }

    void brightnessMovesAllValues()
    {
        const double plain = meanIn(frameOf(plainSettings()), greyPatch).luminance();
        const double more = meanIn(frameOf(with(CMProperty_Brightness, 50)), greyPatch).luminance();
        const double less =
            meanIn(frameOf(with(CMProperty_Brightness, -50)), greyPatch).luminance();
        QVERIFY(std::abs(more - plain - 40) < 1.5);
        QVERIFY(std::abs(plain - less - 40) < 1.5);
    }

    void contrastSpreadsValuesAroundTheMiddle()
    {
        const double plain = meanIn(frameOf(plainSettings()), greyPatch).luminance();
        const double twice = meanIn(frameOf(with(CMProperty_Contrast, 200)), greyPatch).luminance();
        const Mean none = meanOf(frameOf(with(CMProperty_Contrast, 0)));
        QVERIFY(std::abs((twice - 128) - 2 * (plain - 128)) < 3);
        QVERIFY(std::abs(none.luminance() - 128) < 1);
    }

    void gammaBendsTheToneCurve()
    {
        const double plain = meanIn(frameOf(plainSettings()), greyPatch).green;
        const double bent = meanIn(frameOf(with(CMProperty_Gamma, 200)), greyPatch).green;
        QVERIFY(std::abs(bent - 255 * std::sqrt(plain / 255)) < 2);
    }

    void hueTurnsColors()
    {
        const Mean plain = meanIn(frameOf(plainSettings()), redPatch);
        const Mean turned = meanIn(frameOf(with(CMProperty_Hue, 90)), redPatch);
        const double before = plain.red - plain.luminance();
        QVERIFY(before > 60);
        QVERIFY(turned.red - turned.luminance() < before / 2);
        QVERIFY(std::abs(turned.luminance() - plain.luminance()) < 6);
        const Mean field = meanIn(frameOf(with(CMProperty_Hue, 90)), background);
        QVERIFY(std::abs(field.red - field.blue) < 2);
    }

    void saturationScalesColors()
    {
        const Mean plain = meanIn(frameOf(plainSettings()), redPatch);
        const Mean half = meanIn(frameOf(with(CMProperty_Saturation, 50)), redPatch);
        QVERIFY(std::abs((half.red - half.green) / (plain.red - plain.green) - 0.5) < 0.03);
        QVERIFY(isGrey(frameOf(with(CMProperty_Saturation, 0))));
    }

    void monochromeHasNoColor()
    {
        const QImage frame = frameOf(with(CMProperty_ColorMode, 1));
        QVERIFY(isGrey(frame));
        const double plain = meanIn(frameOf(plainSettings()), redPatch).luminance();
        QVERIFY(std::abs(meanIn(frame, redPatch).luminance() - plain) < 1.5);
    }

    void negativeInverts()
    {
        const QImage plain = frameOf(plainSettings());
        const QImage negative = frameOf(with(CMProperty_ColorMode, 2));
        for (const QRectF& area : {background, greyPatch, redPatch, ribs}) {
            const Mean a = meanIn(plain, area);
            const Mean b = meanIn(negative, area);
            QVERIFY(std::abs(a.red + b.red - 255) < 1);
            QVERIFY(std::abs(a.green + b.green - 255) < 1);
            QVERIFY(std::abs(a.blue + b.blue - 255) < 1);
        }
    }

    void sharpnessSteepensEdges()
    {
        const double soft = steepnessWith(CMProperty_Sharpness, 0);
        const double plain = steepnessWith(CMProperty_Sharpness, 20);
        const double sharp = steepnessWith(CMProperty_Sharpness, 100);
        QVERIFY(soft < 0.9 * plain);
        QVERIFY(sharp > 1.3 * plain);
    }

    void denoiseTakesNoiseAndSomeSharpness()
    {
        const double noisy = noiseWith(CMProperty_Denoise, 0);
        const double clean = noiseWith(CMProperty_Denoise, 100);
        QVERIFY2(clean < 0.4 * noisy, qPrintable(QString::number(clean)));
        QVERIFY(steepnessWith(CMProperty_Denoise, 100) <
                0.9 * steepnessWith(CMProperty_Denoise, 0));
    }

    void gainRaisesNoise()
    {
        // The light that the gain takes in place of the exposure grows with the root.
        const double plain = noiseWith(CMProperty_Gain, 100);
        SimulatedSettings settings = with(CMProperty_ExposureTime, 1000);
        settings.setValue(CMProperty_Gain, 1600);
        MicroscopeImager imager;
        const QImage a = frameOf(imager, settings, 0);
        const QImage b = frameOf(imager, settings, 3);
        // Three frames at 60 a second are five whole ripples of the light, so the bands stand.
        QVERIFY(spreadOfDifference(a, b, pixelsOf(a, greyPatch)) > 2.5 * plain);
    }

    void flipAndMirrorTurnThePicture_data()
    {
        QTest::addColumn<bool>("flip");
        QTest::addColumn<bool>("mirror");
        QTest::newRow("flip") << true << false;
        QTest::newRow("mirror") << false << true;
        QTest::newRow("both") << true << true;
    }

    void flipAndMirrorTurnThePicture()
    {
        QFETCH(bool, flip);
        QFETCH(bool, mirror);
        SimulatedSettings settings = plainSettings();
        const QImage upright = frameOf(settings);
        settings.flip = flip;
        settings.mirror = mirror;
        const QImage turned = frameOf(settings);
        QVERIFY(largestDifference(upright, turned) > 100);
        // Only the noise differs, which is no part of what is turned.
        QVERIFY(largestDifference(upright.mirrored(mirror, flip), turned) <= 12);
    }

    void yuvHasOneColorForTwoPixels()
    {
        SimulatedSettings settings = plainSettings();
        const QImage scene = zolens::MicroscopeScene(settings.size).image();
        QImage rgb = scene;
        ImagePipeline(settings).develop(rgb);
        settings.format = FrameFormat::Yuv;
        QImage yuv = scene;
        ImagePipeline(settings).develop(yuv);
        QVERIFY(unequalPairs(yuv) < 0.002);
        QVERIFY(unequalPairs(rgb) > 0.02);
        QVERIFY(std::abs(meanOf(yuv).luminance() - meanOf(rgb).luminance()) < 0.5);
    }

    void mjpegLosesALittle()
    {
        SimulatedSettings settings = plainSettings();
        const QImage scene = zolens::MicroscopeScene(settings.size).image();
        QImage rgb = scene;
        ImagePipeline(settings).develop(rgb);
        settings.format = FrameFormat::Mjpeg;
        QImage mjpeg = scene;
        ImagePipeline(settings).develop(mjpeg);
        const double loss = spreadOfDifference(rgb, mjpeg, rgb.rect());
        QVERIFY2(loss > 0.5 && loss < 6.0, qPrintable(QString::number(loss)));
        QVERIFY(std::abs(meanOf(mjpeg).luminance() - meanOf(rgb).luminance()) < 1);
    }

    void shortExposuresShowTheRippleOfTheLight()
    {
        SimulatedSettings settings = with(CMProperty_ExposureTime, 4000);
        settings.setValue(CMProperty_Gain, 250);
        const auto bands = bandsOf(settings);
        const auto [darkest, lightest] = std::minmax_element(bands.begin(), bands.end());
        // A ripple of 16 % averaged over 0.4 of its period: sin(0.4 pi) / (0.4 pi) of it is left.
        const double depth = 0.16 * std::sin(0.4 * M_PI) / (0.4 * M_PI);
        QVERIFY2(std::abs(*lightest / *darkest - (1 + depth) / (1 - depth)) < 0.03,
                 qPrintable(QString::number(*lightest / *darkest)));
    }

    void exposuresOfWholeRipplesShowNone_data()
    {
        QTest::addColumn<double>("time");
        QTest::newRow("one") << 10000.0;
        QTest::newRow("two") << 20000.0;
        QTest::newRow("five") << 50000.0;
    }

    void exposuresOfWholeRipplesShowNone()
    {
        QFETCH(double, time);
        const auto bands = bandsOf(with(CMProperty_ExposureTime, time));
        const auto [darkest, lightest] = std::minmax_element(bands.begin(), bands.end());
        QVERIFY(*lightest / *darkest < 1.02);
    }

private:
    /// From top to bottom, at least 24 pixels away from every particle of frame 0.
    static QRect stripWithoutParticles(const QImage& frame)
    {
        const auto particles = zolens::particlesAt(0);
        for (int x = 30; x + 40 < frame.width(); x += 4) {
            const QRect strip(x, 0, 16, frame.height());
            const auto touches = [&](const zolens::Particle& particle) {
                const QRect near = pixelsOf(frame, particle.bounds());
                return near.adjusted(-24, 0, 24, 0).intersects(strip);
            };
            if (std::none_of(particles.begin(), particles.end(), touches))
                return strip;
        }
        return {};
    }

    static double steepnessWith(tagCMProperty id, double value)
    {
        SimulatedSettings settings = with(id, value);
        QImage image = zolens::MicroscopeScene(settings.size).image();
        ImagePipeline(settings).develop(image);
        return steepness(image, pixelsOf(image, ribs));
    }

    static double noiseWith(tagCMProperty id, double value)
    {
        MicroscopeImager imager;
        const QImage a = frameOf(imager, with(id, value), 0);
        const QImage b = frameOf(imager, with(id, value), 1);
        return spreadOfDifference(a, b, pixelsOf(a, greyPatch));
    }

    /// Share of the pairs of neighbours whose colour differs by more than rounding.
    static double unequalPairs(const QImage& image)
    {
        int unequal = 0;
        int pairs = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x + 1 < image.width(); x += 2, ++pairs) {
                const QRgb a = image.pixel(x, y);
                const QRgb b = image.pixel(x + 1, y);
                const int difference = (qRed(a) - qBlue(a)) - (qRed(b) - qBlue(b));
                unequal += std::abs(difference) > 1 ? 1 : 0;
            }
        }
        return static_cast<double>(unequal) / pairs;
    }

    /// Light of each row against that of a picture without ripple, in a strip of empty field.
    static std::vector<double> bandsOf(SimulatedSettings settings)
    {
        const QImage rippled = frameOf(settings);
        const double amount =
            settings.value(CMProperty_ExposureTime) * settings.value(CMProperty_Gain);
        settings.setValue(CMProperty_ExposureTime, 10000);
        settings.setValue(CMProperty_Gain, amount / 10000);
        QImage still(settings.size, QImage::Format_RGB32);
        MicroscopeImager().render(settings, 0, still);
        std::vector<double> bands;
        for (int y = 0; y < rippled.height(); y += 4) {
            const QRect strip(780, y, 24, 4);
            bands.push_back(meanOf(rippled, strip).green / meanOf(still, strip).green);
        }
        return bands;
    }
};

QTEST_GUILESS_MAIN(tst_MicroscopeImager)
#include "tst_MicroscopeImager.moc"
