#include "DeviceClasses.h"
#include "support/Gate.h"
#include "support/NoNewThread.h"
#include "support/fakev4l2/CameraBench.h"
#include "v4l2/CaptureScan.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <thread>

using namespace std::chrono_literals;

namespace {

/// Two scans that wait as long as they may, and time to spare.
constexpr int scanLimit = 6000;

/// Of the capture devices that are listed.
std::vector<int> numbers()
{
    std::vector<int> found;
    for (const auto& device : zolens::presentCameras()) {
        if (device.type == CWDevice_Uvc)
            found.push_back(device.index);
    }
    return found;
}

} // namespace

class tst_CaptureScan final : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        bench = std::make_unique<CameraBench>();
        for (const int number : {0, 1, 2})
            bench->plug(number, CameraBench::webcam(), "1234", "5678");
        zolens::setCaptureHost(bench->host());
    }

    void listsAllByNumber() { QCOMPARE(numbers(), (std::vector<int>{0, 1, 2})); }

    void nodesForWhichNoThreadIsLeftAreAskedTheNextTime()
    {
        zolens::CaptureScan scan;
        {
            const NoNewThread limit;
            QVERIFY(scan.nodes(bench->host(), 60s).empty());
        }
        QCOMPARE(scan.nodes(bench->host(), 60s).size(), std::size_t(3));
    }

    void aNodeThatCannotBeOpenedHidesNoOther()
    {
        Gate gate;
        std::atomic<int> asked{0};
        bench->system->beforeOpening(bench->node(1), [&asked, wait = gate.wait()] {
            ++asked;
            wait();
        });
        const std::vector<int> others = {0, 2};
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(numbers(), others);
        QVERIFY2(timer.elapsed() < scanLimit, qPrintable(QString::number(timer.elapsed())));
        // Waiting anew each time would take 20 s.
        timer.restart();
        for (int i = 0; i < 10; ++i)
            QCOMPARE(numbers(), others);
        QVERIFY2(timer.elapsed() < 15000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(asked.load(), 1);
        gate.open();
        QTRY_COMPARE(numbers(), (std::vector<int>{0, 1, 2}));
        QTRY_COMPARE(bench->system->openHandles(), 0);
    }

    void aNodeThatDoesNotAnswerHidesNoOther()
    {
        Gate gate;
        std::atomic<int> asked{0};
        bench->system->before(VIDIOC_QUERYCAP, [&asked, wait = gate.wait()] {
            if (++asked == 1)
                wait();
        });
        const std::vector<int> others = numbers();
        QCOMPARE(others.size(), std::size_t(2));
        QCOMPARE(numbers(), others);
        bench->plug(3, CameraBench::webcam(), "1234", "5678");
        QCOMPARE(numbers().size(), std::size_t(3));
        QCOMPARE(bench->system->openHandles(), 1);
        gate.open();
        QTRY_COMPARE(numbers(), (std::vector<int>{0, 1, 2, 3}));
        QTRY_COMPARE(bench->system->openHandles(), 0);
    }

    void severalMayListAtATime()
    {
        std::atomic<int> found{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&found] {
                for (int round = 0; round < 20; ++round)
                    found += int(numbers().size());
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(found.load(), 4 * 20 * 3);
    }

private:
    std::unique_ptr<CameraBench> bench;
};

QTEST_GUILESS_MAIN(tst_CaptureScan)
#include "tst_CaptureScan.moc"
