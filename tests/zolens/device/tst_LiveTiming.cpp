#include "device/LiveTiming.h"
#include "zolens/StreamTimes.h"

#include <QtTest>

using namespace std::chrono_literals;
using namespace streamtimes;
using namespace zolens;

class tst_LiveTiming : public QObject
{
    Q_OBJECT

private slots:
    void watchdogKeepsTheFirstDeadlineUntilAFrame();
    void watchdogOfADeviceExpectsTheFirstFrameLikeAnyOther();
    void watchdogWaitsTwoSecondsForAFastSource();
    void watchdogWaitsTenFrameTimesForASlowSource();
    void watchdogLearnsTheFrameTime();
    void watchdogTakesNonsenseForAFastSource_data();
    void watchdogTakesNonsenseForAFastSource();
    void pausesDoubleUpToEightSeconds();
    void pausesAreShortAgainAfterALongConnection();
};

void tst_LiveTiming::watchdogKeepsTheFirstDeadlineUntilAFrame()
{
    const FrameWatchdog watchdog(start + 4500ms, 0.04);
    QVERIFY(watchdog.deadline() == start + 4500ms);
}

void tst_LiveTiming::watchdogOfADeviceExpectsTheFirstFrameLikeAnyOther()
{
    QCOMPARE(milliseconds(FrameWatchdog::startedAt(start, 0.04).deadline() - start), 2000LL);
    QCOMPARE(milliseconds(FrameWatchdog::startedAt(start, 0.5).deadline() - start), 5000LL);
}

void tst_LiveTiming::watchdogWaitsTwoSecondsForAFastSource()
{
    FrameWatchdog watchdog(start, 0.04);
    watchdog.frameArrived(start + 1s);
    QCOMPARE(milliseconds(watchdog.deadline() - start), 3000LL);
    watchdog.frameArrived(start + 1040ms);
    QCOMPARE(milliseconds(watchdog.deadline() - start), 3040LL);
}

void tst_LiveTiming::watchdogWaitsTenFrameTimesForASlowSource()
{
    FrameWatchdog watchdog(start, 0.5);
    watchdog.frameArrived(start);
    QCOMPARE(milliseconds(watchdog.deadline() - start), 5000LL);
}

void tst_LiveTiming::watchdogLearnsTheFrameTime()
{
    FrameWatchdog watchdog(start, 0.0);
    StreamClock::time_point now = start;
    for (int i = 0; i < 100; ++i)
        watchdog.frameArrived(now += 1s);
    QVERIFY(qAbs(milliseconds(watchdog.deadline() - now) - 10000) < 10);
}

void tst_LiveTiming::watchdogTakesNonsenseForAFastSource_data()
{
    QTest::addColumn<double>("stated");
    QTest::newRow("nothing") << 0.0;
    QTest::newRow("negative") << -1.0;
    QTest::newRow("an hour") << 3600.0;
    QTest::newRow("no number") << qQNaN();
    QTest::newRow("tiny") << 1e-12;
}

void tst_LiveTiming::watchdogTakesNonsenseForAFastSource()
{
    QFETCH(double, stated);
    FrameWatchdog watchdog(start, stated);
    watchdog.frameArrived(start);
    QCOMPARE(milliseconds(watchdog.deadline() - start), 2000LL);
}

void tst_LiveTiming::pausesDoubleUpToEightSeconds()
{
    ReconnectPause pause;
    for (const long long expected : {250, 500, 1000, 2000, 4000, 8000, 8000})
        QCOMPARE(milliseconds(pause.next(1s)), expected);
}

void tst_LiveTiming::pausesAreShortAgainAfterALongConnection()
{
    ReconnectPause pause;
    for (int i = 0; i < 10; ++i)
        pause.next(0s);
    QCOMPARE(milliseconds(pause.next(20s)), 250LL);
    QCOMPARE(milliseconds(pause.next(0s)), 500LL);
}

QTEST_APPLESS_MAIN(tst_LiveTiming)
#include "tst_LiveTiming.moc"
