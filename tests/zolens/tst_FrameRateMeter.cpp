#include "frames/FrameRateMeter.h"

#include <QtTest>

using zolens::FrameRateMeter;
using namespace std::chrono_literals;

class tst_FrameRateMeter final : public QObject
{
    Q_OBJECT

private slots:
    void isZeroBeforeTheSecondFrame()
    {
        FrameRateMeter meter;
        QCOMPARE(meter.rate(start), 0.0F);
        meter.frameArrived(start);
        QCOMPARE(meter.rate(start + 10ms), 0.0F);
    }

    void countsRegularFrames()
    {
        FrameRateMeter meter;
        const auto last = feed(meter, start, 40ms, 100);
        QCOMPARE(meter.rate(last + 5ms), 25.0F);
    }

    void followsAChangeWithinASecond()
    {
        FrameRateMeter meter;
        const auto change = feed(meter, start, 20ms, 200);
        const auto last = feed(meter, change + 100ms, 100ms, 11);
        QCOMPARE(meter.rate(last), 10.0F);
    }

    void measuresFramesSlowerThanOncePerSecond()
    {
        FrameRateMeter meter;
        const auto last = feed(meter, start, 4s, 3);
        QCOMPARE(meter.rate(last + 3s), 0.25F);
    }

    void isZeroOnceFramesStayAway()
    {
        FrameRateMeter meter;
        const auto last = feed(meter, start, 40ms, 50);
        QVERIFY(meter.rate(last + 1s) > 0.0F);
        QCOMPARE(meter.rate(last + 1100ms), 0.0F);
    }

    void isZeroForFramesOfOneInstant()
    {
        FrameRateMeter meter;
        feed(meter, start, 0ms, 5);
        QCOMPARE(meter.rate(start), 0.0F);
    }

private:
    static FrameRateMeter::Clock::time_point feed(FrameRateMeter& meter,
                                                  FrameRateMeter::Clock::time_point from,
                                                  std::chrono::milliseconds interval, int count)
    {
        for (int i = 0; i < count; ++i)
            meter.frameArrived(from + i * interval);
        return from + (count - 1) * interval;
    }

    const FrameRateMeter::Clock::time_point start{1h};
};

QTEST_APPLESS_MAIN(tst_FrameRateMeter)
#include "tst_FrameRateMeter.moc"
