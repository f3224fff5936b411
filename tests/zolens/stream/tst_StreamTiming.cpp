#include "stream/StreamTiming.h"

#include <QtTest>

using namespace std::chrono_literals;
using namespace zolens;

namespace {

const StreamClock::time_point start = StreamClock::time_point() + 1000s;

long long milliseconds(StreamClock::duration duration)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
}

} // namespace

class tst_StreamTiming : public QObject
{
    Q_OBJECT

private slots:
    void watchdogKeepsTheFirstDeadlineUntilAFrame();
    void watchdogWaitsTwoSecondsForAFastSource();
    void watchdogWaitsTenFrameTimesForASlowSource();
    void watchdogLearnsTheFrameTime();
    void watchdogTakesNonsenseForAFastSource_data();
    void watchdogTakesNonsenseForAFastSource();
    void clockFollowsTimeStamps();
    void clockCountsFramesWithoutTimeStamps();
    void clockPassesOverGapsAndJumpsBack();
    void clockGivesUpLongDelays();
    void clockGoesOnAfterARestart();
    void pausesDoubleUpToEightSeconds();
    void pausesAreShortAgainAfterALongConnection();
};

void tst_StreamTiming::watchdogKeepsTheFirstDeadlineUntilAFrame()
{
    const FrameWatchdog watchdog(start + 4500ms, 0.04);
    QVERIFY(watchdog.deadline() == start + 4500ms);
}

void tst_StreamTiming::watchdogWaitsTwoSecondsForAFastSource()
{
    FrameWatchdog watchdog(start, 0.04);
    watchdog.frameArrived(start + 1s);
    QCOMPARE(milliseconds(watchdog.deadline() - start), 3000LL);
    watchdog.frameArrived(start + 1040ms);
    QCOMPARE(milliseconds(watchdog.deadline() - start), 3040LL);
}

void tst_StreamTiming::watchdogWaitsTenFrameTimesForASlowSource()
{
    FrameWatchdog watchdog(start, 0.5);
    watchdog.frameArrived(start);
    QCOMPARE(milliseconds(watchdog.deadline() - start), 5000LL);
}

void tst_StreamTiming::watchdogLearnsTheFrameTime()
{
    FrameWatchdog watchdog(start, 0.0);
    StreamClock::time_point now = start;
    for (int i = 0; i < 100; ++i)
        watchdog.frameArrived(now += 1s);
    QVERIFY(qAbs(milliseconds(watchdog.deadline() - now) - 10000) < 10);
}

void tst_StreamTiming::watchdogTakesNonsenseForAFastSource_data()
{
    QTest::addColumn<double>("stated");
    QTest::newRow("nothing") << 0.0;
    QTest::newRow("negative") << -1.0;
    QTest::newRow("an hour") << 3600.0;
    QTest::newRow("no number") << qQNaN();
    QTest::newRow("tiny") << 1e-12;
}

void tst_StreamTiming::watchdogTakesNonsenseForAFastSource()
{
    QFETCH(double, stated);
    FrameWatchdog watchdog(start, stated);
    watchdog.frameArrived(start);
    QCOMPARE(milliseconds(watchdog.deadline() - start), 2000LL);
}

void tst_StreamTiming::clockFollowsTimeStamps()
{
    PlaybackClock clock(0.04);
    QVERIFY(clock.due(7.0, start) == start);
    QCOMPARE(milliseconds(clock.due(7.1, start) - start), 100LL);
    QCOMPARE(milliseconds(clock.due(7.5, start) - start), 500LL);
}

void tst_StreamTiming::clockCountsFramesWithoutTimeStamps()
{
    PlaybackClock clock(0.04);
    clock.due(std::nullopt, start);
    QCOMPARE(milliseconds(clock.due(std::nullopt, start) - start), 40LL);
    QCOMPARE(milliseconds(clock.due(std::nullopt, start) - start), 80LL);
}

void tst_StreamTiming::clockPassesOverGapsAndJumpsBack()
{
    PlaybackClock clock(0.04);
    clock.due(5.0, start);
    QCOMPARE(milliseconds(clock.due(5000.0, start) - start), 40LL);
    QCOMPARE(milliseconds(clock.due(1.0, start) - start), 80LL);
    QCOMPARE(milliseconds(clock.due(1.1, start) - start), 180LL);
}

void tst_StreamTiming::clockGivesUpLongDelays()
{
    PlaybackClock clock(0.04);
    clock.due(0.0, start);
    // A short delay is made up for, a long one moves everything.
    QCOMPARE(milliseconds(clock.due(0.1, start + 300ms) - start), 100LL);
    QCOMPARE(milliseconds(clock.due(0.2, start + 5s) - start), 5000LL);
    QCOMPARE(milliseconds(clock.due(0.3, start + 5s) - start), 5100LL);
}

void tst_StreamTiming::clockGoesOnAfterARestart()
{
    PlaybackClock clock(0.04);
    clock.due(0.0, start);
    clock.due(0.1, start);
    clock.restart();
    QCOMPARE(milliseconds(clock.due(0.0, start) - start), 140LL);
    QCOMPARE(milliseconds(clock.due(0.1, start) - start), 240LL);
}

void tst_StreamTiming::pausesDoubleUpToEightSeconds()
{
    ReconnectPause pause;
    for (const long long expected : {250, 500, 1000, 2000, 4000, 8000, 8000})
        QCOMPARE(milliseconds(pause.next(1s)), expected);
}

void tst_StreamTiming::pausesAreShortAgainAfterALongConnection()
{
    ReconnectPause pause;
    for (int i = 0; i < 10; ++i)
        pause.next(0s);
    QCOMPARE(milliseconds(pause.next(20s)), 250LL);
    QCOMPARE(milliseconds(pause.next(0s)), 500LL);
}

QTEST_APPLESS_MAIN(tst_StreamTiming)
#include "tst_StreamTiming.moc"
