#include "stream/PlaybackClock.h"
#include "zolens/StreamTimes.h"

#include <QtTest>

using namespace std::chrono_literals;
using namespace streamtimes;
using namespace zolens;

class tst_PlaybackClock : public QObject
{
    Q_OBJECT

private slots:
    void clockFollowsTimeStamps();
    void clockCountsFramesWithoutTimeStamps();
    void clockPassesOverGapsAndJumpsBack();
    void clockGivesUpLongDelays();
    void clockGoesOnAfterARestart();
};

void tst_PlaybackClock::clockFollowsTimeStamps()
{
    PlaybackClock clock(0.04);
    QVERIFY(clock.due(7.0, start) == start);
    QCOMPARE(milliseconds(clock.due(7.1, start) - start), 100LL);
    QCOMPARE(milliseconds(clock.due(7.5, start) - start), 500LL);
}

void tst_PlaybackClock::clockCountsFramesWithoutTimeStamps()
{
    PlaybackClock clock(0.04);
    clock.due(std::nullopt, start);
    QCOMPARE(milliseconds(clock.due(std::nullopt, start) - start), 40LL);
    QCOMPARE(milliseconds(clock.due(std::nullopt, start) - start), 80LL);
}

void tst_PlaybackClock::clockPassesOverGapsAndJumpsBack()
{
    PlaybackClock clock(0.04);
    clock.due(5.0, start);
    QCOMPARE(milliseconds(clock.due(5000.0, start) - start), 40LL);
    QCOMPARE(milliseconds(clock.due(1.0, start) - start), 80LL);
    QCOMPARE(milliseconds(clock.due(1.1, start) - start), 180LL);
}

void tst_PlaybackClock::clockGivesUpLongDelays()
{
    PlaybackClock clock(0.04);
    clock.due(0.0, start);
    // A short delay is made up for, a long one moves everything.
    QCOMPARE(milliseconds(clock.due(0.1, start + 300ms) - start), 100LL);
    QCOMPARE(milliseconds(clock.due(0.2, start + 5s) - start), 5000LL);
    QCOMPARE(milliseconds(clock.due(0.3, start + 5s) - start), 5100LL);
}

void tst_PlaybackClock::clockGoesOnAfterARestart()
{
    PlaybackClock clock(0.04);
    clock.due(0.0, start);
    clock.due(0.1, start);
    clock.restart();
    QCOMPARE(milliseconds(clock.due(0.0, start) - start), 140LL);
    QCOMPARE(milliseconds(clock.due(0.1, start) - start), 240LL);
}

QTEST_APPLESS_MAIN(tst_PlaybackClock)
#include "tst_PlaybackClock.moc"
