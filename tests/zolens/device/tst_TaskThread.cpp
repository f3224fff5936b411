#include "device/TaskThread.h"
#include "support/NoNewThread.h"
#include "support/TimeLimits.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <future>

using namespace std::chrono_literals;
using zolens::TaskThread;

namespace {

/// A task that takes until it is let go, or ten seconds.
class LateTask final
{
public:
    std::function<int()> task()
    {
        return [count = done, letGo = gate.get_future().share()] {
            letGo.wait_for(10s);
            return ++*count;
        };
    }
    void letGo() { gate.set_value(); }
    int timesDone() const { return *done; }

private:
    std::promise<void> gate;
    const std::shared_ptr<std::atomic<int>> done = std::make_shared<std::atomic<int>>(0);
};

} // namespace

class tst_TaskThread final : public QObject
{
    Q_OBJECT

private slots:
    void answersInOrder()
    {
        TaskThread thread;
        int last = 0;
        for (int i = 1; i <= 200; ++i)
            QCOMPARE(thread.ask<int>([&last, i] { return last = i; }, 5s).value_or(-1), i);
        QCOMPARE(last, 200);
    }

    void runsOnAThreadOfItsOwn()
    {
        TaskThread thread;
        QVERIFY(thread.isRunning());
        const auto id = thread.ask<std::thread::id>([] { return std::this_thread::get_id(); }, 5s);
        QVERIFY(id && *id != std::this_thread::get_id());
    }

    void refusesAtOnceWhileATaskIsLate()
    {
        TaskThread thread;
        LateTask late;
        QVERIFY(!thread.ask<int>(late.task(), 20ms));
        bool refusedOneRan = false;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!thread.ask<bool>([&refusedOneRan] { return refusedOneRan = true; }, 5s));
        QVERIFY(timer.elapsed() < timelimits::atOnce);
        late.letGo();
        QTRY_COMPARE(late.timesDone(), 1);
        QTRY_VERIFY(thread.ask<int>([] { return 5; }, 5s).has_value());
        QVERIFY(!refusedOneRan);
    }

    void isLateForEverWhereNoThreadIsLeft()
    {
        const NoNewThread limit;
        TaskThread thread;
        QVERIFY(!thread.isRunning());
        QVERIFY(thread.isLate());
        bool ran = false;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!thread.ask<bool>([&ran] { return ran = true; }, 60s));
        thread.post([&ran] { ran = true; });
        QVERIFY(timer.elapsed() < timelimits::atOnce);
        QVERIFY(!ran);
    }

    void endsWithoutWaitingForALateTask()
    {
        LateTask late;
        QElapsedTimer timer;
        {
            TaskThread thread;
            QVERIFY(!thread.ask<int>(late.task(), 20ms));
            timer.start();
        }
        QVERIFY(timer.elapsed() < timelimits::atOnce);
        QCOMPARE(late.timesDone(), 0);
        late.letGo();
        QTRY_COMPARE(late.timesDone(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_TaskThread)
#include "tst_TaskThread.moc"
