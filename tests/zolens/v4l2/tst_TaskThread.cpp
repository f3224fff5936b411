#include "v4l2/TaskThread.h"

#include <QElapsedTimer>
#include <QtTest>

using namespace std::chrono_literals;
using zolens::TaskThread;

namespace {

std::function<int()> sleeping(std::shared_ptr<std::atomic<int>> done,
                              std::chrono::milliseconds time)
{
    return [done, time] {
        std::this_thread::sleep_for(time);
        return ++*done;
    };
}

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
        const auto id = thread.ask<std::thread::id>([] { return std::this_thread::get_id(); }, 5s);
        QVERIFY(id && *id != std::this_thread::get_id());
    }

    void refusesAtOnceWhileATaskIsLate()
    {
        TaskThread thread;
        const auto done = std::make_shared<std::atomic<int>>(0);
        QVERIFY(!thread.ask<int>(sleeping(done, 500ms), 20ms));
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!thread.ask<int>(sleeping(done, 0ms), 5s));
        QVERIFY(timer.elapsed() < 200);
        QTRY_COMPARE(done->load(), 1);
        QTRY_VERIFY(thread.ask<int>([] { return 5; }, 5s).has_value());
        QCOMPARE(done->load(), 1);
    }

    void endsWithoutWaitingForALateTask()
    {
        const auto done = std::make_shared<std::atomic<int>>(0);
        QElapsedTimer timer;
        {
            TaskThread thread;
            QVERIFY(!thread.ask<int>(sleeping(done, 700ms), 20ms));
            timer.start();
        }
        QVERIFY(timer.elapsed() < 400);
        QTRY_COMPARE(done->load(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_TaskThread)
#include "tst_TaskThread.moc"
