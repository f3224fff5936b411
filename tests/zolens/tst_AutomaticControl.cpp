#include "PixelMeasures.h"
#include "simulated/AutomaticControl.h"
#include "simulated/MicroscopeImager.h"

#include <QtTest>

using zolens::MicroscopeImager;
using zolens::PowerFrequency;
using zolens::SimulatedSettings;
using namespace measures;

namespace {

const QRectF background(200, -90, 90, 60);

SimulatedSettings startingFrom(double time, double gain)
{
    SimulatedSettings settings;
    settings.size = QSize(640, 480);
    settings.setValue(CMProperty_ExposureTime, time);
    settings.setValue(CMProperty_Gain, gain);
    return settings;
}

} // namespace

class tst_AutomaticControl final : public QObject
{
    Q_OBJECT

private slots:
    void exposureArrivesAtTheTarget_data()
    {
        QTest::addColumn<double>("target");
        QTest::addColumn<double>("time");
        QTest::addColumn<double>("gain");
        for (const double target : {60.0, 120.0, 205.0}) {
            QTest::addRow("%g from dark", target) << target << 50.0 << 100.0;
            QTest::addRow("%g from bright", target) << target << 250000.0 << 1600.0;
        }
    }

    void exposureArrivesAtTheTarget()
    {
        QFETCH(double, target);
        QFETCH(double, time);
        QFETCH(double, gain);
        SimulatedSettings settings = startingFrom(time, gain);
        settings.setValue(CMProperty_ExposureTarget, target);
        settle(settings);
        // In whole ripples of the light the mean has no part of the bands.
        const double mean = meanOf(frameOf(settings)).luminance();
        const double allowed =
            settings.value(CMProperty_ExposureTime) < 10000 ? 0.06 * target : 2.0;
        QVERIFY2(std::abs(mean - target) < allowed, qPrintable(QString::number(mean)));
    }

    void exposureTakesSeveralFrames()
    {
        SimulatedSettings settings = startingFrom(1000, 100);
        const double start = luminance(settings);
        zolens::adjustExposure(settings, meter());
        const double first = luminance(settings);
        QVERIFY(first > start + 5);
        QVERIFY(first < settings.value(CMProperty_ExposureTarget) - 20);
        settle(settings);
        QVERIFY(std::abs(luminance(settings) - 205) < 1);
    }

    void exposureRestsAtTheTarget()
    {
        SimulatedSettings settings = startingFrom(1000, 100);
        settle(settings);
        const SimulatedSettings settled = settings;
        zolens::adjustExposure(settings, meter());
        QVERIFY(settings == settled);
    }

    void exposureTimeKeepsToThePowerFrequency_data()
    {
        QTest::addColumn<int>("frequency");
        QTest::addColumn<double>("period");
        QTest::newRow("50 Hz") << int(PowerFrequency::Hz50) << 10000.0;
        QTest::newRow("60 Hz") << int(PowerFrequency::Hz60) << 25000.0 / 3;
        QTest::newRow("auto") << int(PowerFrequency::Auto) << 10000.0;
    }

    void exposureTimeKeepsToThePowerFrequency()
    {
        QFETCH(int, frequency);
        QFETCH(double, period);
        SimulatedSettings settings = startingFrom(250000, 400);
        settings.powerFrequency = static_cast<PowerFrequency>(frequency);
        settle(settings);
        const double periods = settings.value(CMProperty_ExposureTime) / period;
        QVERIFY(periods > 0.99);
        QVERIFY(std::abs(periods - std::round(periods)) < 0.001);
        QVERIFY(std::abs(luminance(settings) - 205) < 2);
    }

    void exposureTimeIsFreeWithoutPowerFrequency()
    {
        SimulatedSettings settings = startingFrom(250000, 400);
        settings.powerFrequency = PowerFrequency::Disabled;
        settle(settings);
        QCOMPARE(settings.value(CMProperty_Gain), 100.0);
        const double periods = settings.value(CMProperty_ExposureTime) / 10000;
        QVERIFY(std::abs(periods - std::round(periods)) > 0.02);
    }

    void brightnessIsNotTakenBackByExposure()
    {
        SimulatedSettings settings = startingFrom(10000, 100);
        settle(settings);
        const SimulatedSettings settled = settings;
        settings.setValue(CMProperty_Brightness, 40);
        zolens::adjustExposure(settings, meter());
        QCOMPARE(settings.value(CMProperty_Gain), settled.value(CMProperty_Gain));
        QCOMPARE(settings.value(CMProperty_ExposureTime), settled.value(CMProperty_ExposureTime));
    }

    void oneBalancingMakesTheFieldNeutral()
    {
        SimulatedSettings settings = detuned();
        QVERIFY(castOf(settings) > 30);
        zolens::balanceWhite(settings, meter());
        QVERIFY2(castOf(settings) < 2, qPrintable(QString::number(castOf(settings))));
    }

    void automaticBalanceApproachesNeutral()
    {
        SimulatedSettings settings = detuned();
        const double start = castOf(settings);
        zolens::approachWhiteBalance(settings, meter());
        const double first = castOf(settings);
        QVERIFY(first < start - 5);
        QVERIFY(first > 5);
        for (int i = 0; i < 30; ++i)
            zolens::approachWhiteBalance(settings, meter());
        QVERIFY(castOf(settings) < 2);
    }

private:
    const QImage& meter() { return imager.sceneOf(QSize(640, 480)).meter(); }

    void settle(SimulatedSettings& settings)
    {
        for (int i = 0; i < 60; ++i)
            zolens::adjustExposure(settings, meter());
    }

    double luminance(const SimulatedSettings& settings)
    {
        return zolens::meteredLuminance(settings, meter());
    }

    QImage frameOf(const SimulatedSettings& settings)
    {
        QImage frame(settings.size, QImage::Format_RGB32);
        imager.render(settings, 0, frame);
        return frame;
    }

    static SimulatedSettings detuned()
    {
        SimulatedSettings settings = startingFrom(5000, 100);
        settings.setValue(CMProperty_ColorTemperature, 8000);
        settings.setValue(CMProperty_RedGain, 130);
        return settings;
    }

    /// The largest difference between the channels in the empty field.
    double castOf(const SimulatedSettings& settings)
    {
        const QImage frame = frameOf(settings);
        const Mean mean = meanOf(frame, pixelsOf(frame, background));
        const auto [least, most] = std::minmax({mean.red, mean.green, mean.blue});
        return most - least;
    }

    MicroscopeImager imager;
};

QTEST_GUILESS_MAIN(tst_AutomaticControl)
#include "tst_AutomaticControl.moc"
