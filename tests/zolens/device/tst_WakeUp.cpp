#include "device/WakeUp.h"

#include <QElapsedTimer>
#include <QtTest>

#include <future>

#include <poll.h>

using namespace std::chrono_literals;
using zolens::WakeUp;

namespace {

/// Waits for a ring for up to that time.
bool hearsARing(const WakeUp& wake, std::chrono::milliseconds patience)
{
    pollfd bell = {wake.descriptor(), POLLIN, 0};
    return poll(&bell, 1, int(patience.count())) == 1;
}

} // namespace

class tst_WakeUp final : public QObject
{
    Q_OBJECT

private slots:
    void aRingEndsAWaitOnAnotherThread()
    {
        WakeUp wake;
        auto waiter = std::async(std::launch::async, [&wake] { return hearsARing(wake, 30s); });
        QVERIFY(waiter.wait_for(50ms) == std::future_status::timeout);
        wake.ring();
        QVERIFY(waiter.get());
    }

    void aRingIsHeardUntilItIsCleared()
    {
        WakeUp wake;
        QVERIFY(!hearsARing(wake, 0ms));
        wake.ring();
        wake.ring();
        QVERIFY(hearsARing(wake, 0ms));
        QVERIFY(hearsARing(wake, 0ms));
        wake.clear();
        QVERIFY(!hearsARing(wake, 0ms));
        wake.clear();
        wake.ring();
        QVERIFY(hearsARing(wake, 0ms));
    }

    void ringsDoNotShortenASleep()
    {
        WakeUp wake;
        wake.ring();
        QElapsedTimer timer;
        timer.start();
        auto sleeper = std::async(std::launch::async, [&wake, &timer] {
            const bool slept = wake.sleepFor(200ms);
            return slept ? timer.elapsed() : -1;
        });
        while (sleeper.wait_for(10ms) == std::future_status::timeout)
            wake.ring();
        QVERIFY(sleeper.get() >= 200);
    }

    void doesNotSleepUntilATimeThatIsPast()
    {
        WakeUp wake;
        QVERIFY(wake.sleepUntil(WakeUp::Clock::now() - 1h));
        QVERIFY(wake.sleepFor(-1h));
    }

    void cancellingEndsASleepAndAllLaterOnes()
    {
        WakeUp wake;
        QElapsedTimer timer;
        timer.start();
        auto sleeper = std::async(std::launch::async, [&wake] { return wake.sleepFor(60s); });
        QVERIFY(sleeper.wait_for(50ms) == std::future_status::timeout);
        QVERIFY(!wake.isCancelled());
        wake.cancel();
        QVERIFY(!sleeper.get());
        QVERIFY(wake.isCancelled());
        QVERIFY(!wake.sleepFor(60s));
        QVERIFY(timer.elapsed() < 30000);
    }

    void cancellingEndsAWait()
    {
        WakeUp wake;
        wake.cancel();
        QVERIFY(hearsARing(wake, 0ms));
    }
};

QTEST_APPLESS_MAIN(tst_WakeUp)
#include "tst_WakeUp.moc"
