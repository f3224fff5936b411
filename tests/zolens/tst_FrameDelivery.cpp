#include "frames/FrameDelivery.h"

#include "support/NoNewThread.h"
#include "support/ProcessUse.h"
#include "support/TimeLimits.h"

#include <QtTest>

#include <condition_variable>
#include <mutex>
#include <numeric>
#include <thread>

using processuse::residentBytes;
using zolens::FrameDelivery;
using namespace std::chrono_literals;

namespace {

const QSize frameSize(320, 240);

/// A device's part: fills a frame with a number and sends it.
bool send(FrameDelivery& delivery, uint number, const QSize& size = frameSize)
{
    QImage frame = delivery.acquireFrame(size);
    if (frame.isNull())
        return false;
    frame.fill(0xff000000U | number);
    delivery.deliver(std::move(frame));
    return true;
}

uint numberOf(const QImage& image)
{
    return image.pixel(0, 0) & 0xffffffU;
}

/// A viewer that keeps what it gets, as a queue to a busy window does.
class Keeper final
{
public:
    void operator()(const QImage& image)
    {
        {
            const std::lock_guard lock(mutex);
            images.push_back(image);
            ++received;
            newest = numberOf(image);
        }
        changed.notify_all();
    }

    bool waitFor(int count)
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, 5s, [this, count] { return received >= count; });
    }

    QImage takeOldest()
    {
        const std::lock_guard lock(mutex);
        QImage oldest = images.front();
        images.erase(images.begin());
        return oldest;
    }

    int count() const
    {
        const std::lock_guard lock(mutex);
        return received;
    }

    uint newestNumber() const
    {
        const std::lock_guard lock(mutex);
        return newest;
    }

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::vector<QImage> images;
    int received = 0;
    uint newest = 0;
};

} // namespace

class tst_FrameDelivery final : public QObject
{
    Q_OBJECT

private slots:
    void deliversPixelsUncopiedFromAnotherThread()
    {
        std::thread::id viewerThread;
        const uchar* seen = nullptr;
        std::atomic<bool> done{false};
        FrameDelivery delivery(
            [&](const QImage& image) {
                viewerThread = std::this_thread::get_id();
                seen = image.constBits();
                done = true;
            },
            running);
        QImage frame = delivery.acquireFrame(frameSize);
        QCOMPARE(frame.format(), QImage::Format_RGB32);
        const uchar* pixels = frame.constBits();
        delivery.deliver(std::move(frame));
        QTRY_VERIFY(done);
        QCOMPARE(seen, pixels);
        QVERIFY(viewerThread != std::this_thread::get_id());
    }

    void whereNoThreadIsLeftNoViewerGetsAnything()
    {
        Keeper keeper;
        {
            const NoNewThread limit;
            FrameDelivery delivery(std::ref(keeper), running);
            QVERIFY(!delivery.isRunning());
            QVERIFY(send(delivery, 1));
        }
        QCOMPARE(keeper.count(), 0);
        const FrameDelivery delivery(std::ref(keeper), running);
        QVERIFY(delivery.isRunning());
    }

    void tellsAtOnceThatTheModesChanged()
    {
        int told = 0;
        FrameDelivery delivery([](const QImage&) {}, running, [&told] { ++told; });
        delivery.modesChanged();
        QCOMPARE(told, 1);
        FrameDelivery toNobody([](const QImage&) {}, running);
        toNobody.modesChanged();
        QCOMPARE(told, 1);
    }

    void keepsAtMostTwoFramesOutstanding()
    {
        Keeper keeper;
        FrameDelivery delivery(std::ref(keeper), running);
        QVERIFY(send(delivery, 1));
        QVERIFY(keeper.waitFor(1));
        QVERIFY(send(delivery, 2));
        QVERIFY(keeper.waitFor(2));
        for (uint number = 3; number < 20; ++number)
            QVERIFY(send(delivery, number));
        QTest::qWait(50);
        QCOMPARE(keeper.count(), 2);
        QCOMPARE(delivery.droppedFrames(), quint64{16});
    }

    void theNewestWaitingFrameGoesOutWhenABufferComesBack()
    {
        Keeper keeper;
        FrameDelivery delivery(std::ref(keeper), running);
        fillUp(delivery, keeper);
        for (uint number = 10; number <= 15; ++number)
            QVERIFY(send(delivery, number));
        keeper.takeOldest();
        QVERIFY(keeper.waitFor(3));
        QCOMPARE(keeper.newestNumber(), 15U);
    }

    void aBlockedViewerCostsNoMoreThanThePool()
    {
        const QSize size(3840, 2160);
        constexpr qint64 buffer = 3840LL * 2160 * 4;
        Keeper keeper;
        const qint64 start = residentBytes();
        FrameDelivery delivery(std::ref(keeper), running);
        fillUp(delivery, keeper, size);
        uint number = 100;
        for (QElapsedTimer time = started(); time.elapsed() < 1000;)
            QVERIFY(send(delivery, ++number, size));
        QVERIFY2(residentBytes() - start < 5 * buffer + buffer / 2, "more than five buffers");
        keeper.takeOldest();
        QVERIFY(keeper.waitFor(3));
        QCOMPARE(keeper.newestNumber(), number);
    }

    void aDeviceThatHoldsEveryBufferIsRefusedMore()
    {
        FrameDelivery delivery([](const QImage&) {}, running);
        std::vector<QImage> held;
        for (QImage frame = delivery.acquireFrame(frameSize); !frame.isNull();
             frame = delivery.acquireFrame(frameSize)) {
            held.push_back(frame);
        }
        QCOMPARE(held.size(), std::size_t{5});
        QCOMPARE(delivery.droppedFrames(), quint64{1});
    }

    void pausedDeliversNothingButCountsArrivals()
    {
        Keeper keeper;
        std::atomic<bool> paused{true};
        FrameDelivery delivery(std::ref(keeper), paused);
        for (uint number = 0; number < 10; ++number) {
            QVERIFY(!send(delivery, number));
            QTest::qSleep(10);
        }
        QCOMPARE(keeper.count(), 0);
        QCOMPARE(delivery.droppedFrames(), quint64{0});
        QVERIFY(delivery.frameRate() > 0.0F);

        paused = false;
        QVERIFY(send(delivery, 42));
        QVERIFY(keeper.waitFor(1));
        QCOMPARE(keeper.newestNumber(), 42U);
    }

    void aFrameUnderWayWhenThePauseComesIsNotDelivered()
    {
        Keeper keeper;
        std::atomic<bool> paused{false};
        FrameDelivery delivery(std::ref(keeper), paused);
        QImage frame = delivery.acquireFrame(frameSize);
        frame.fill(0);
        paused = true;
        delivery.deliver(std::move(frame));
        QTest::qWait(50);
        QCOMPARE(keeper.count(), 0);
    }

    void aFrameThatWaitsWhenThePauseComesIsNotDelivered()
    {
        Keeper keeper;
        std::atomic<bool> paused{false};
        FrameDelivery delivery(std::ref(keeper), paused);
        fillUp(delivery, keeper);
        QVERIFY(send(delivery, 3));
        paused = true;
        keeper.takeOldest();
        QTest::qWait(50);
        QCOMPARE(keeper.count(), 2);
    }

    void endsWhileAFrameWaitsAndNeverCallsTheViewerAgain()
    {
        Keeper keeper;
        auto delivery = std::make_unique<FrameDelivery>(std::ref(keeper), running);
        fillUp(*delivery, keeper);
        QVERIFY(send(*delivery, 3));
        const QElapsedTimer time = started();
        delivery.reset();
        QVERIFY(time.elapsed() < timelimits::atOnce);
        keeper.takeOldest();
        keeper.takeOldest();
        QTest::qWait(20);
        QCOMPARE(keeper.count(), 2);
    }

    void aFrameThatWaitsGoesWithTheDelivery()
    {
        Keeper keeper;
        auto delivery = std::make_unique<FrameDelivery>(std::ref(keeper), running);
        fillUp(*delivery, keeper);
        std::atomic<bool> freed{false};
        const auto noteFreeing = [](void* flag) { *static_cast<std::atomic<bool>*>(flag) = true; };
        quint32 pixel = 0;
        delivery->deliver(QImage(reinterpret_cast<uchar*>(&pixel), 1, 1, QImage::Format_RGB32,
                                 noteFreeing, &freed));
        QVERIFY(!freed);
        delivery.reset();
        QVERIFY(freed);
    }

    void imagesOutliveTheDelivery()
    {
        Keeper keeper;
        {
            FrameDelivery delivery(std::ref(keeper), running);
            fillUp(delivery, keeper);
        }
        QCOMPARE(numberOf(keeper.takeOldest()), 1U);
        const QImage last = keeper.takeOldest();
        QCOMPARE(numberOf(last), 2U);
        QCOMPARE(last.pixel(319, 239), last.pixel(0, 0));
    }

    void frameRateCountsWhatTheDeviceSends()
    {
        FrameDelivery delivery([](const QImage&) {}, running);
        QCOMPARE(delivery.frameRate(), 0.0F);
        for (uint number = 0; number < 30; ++number) {
            send(delivery, number);
            std::this_thread::sleep_for(20ms);
        }
        // At most fifty; fewer where the machine does not let this thread run.
        const float rate = delivery.frameRate();
        QVERIFY2(rate > 5.0F && rate <= 50.0F, qPrintable(QString::number(rate)));
    }

    void theTapGetsEveryFrameWhateverTheViewersGet()
    {
        Keeper keeper;
        FrameDelivery delivery(std::ref(keeper), running);
        std::vector<uint> tapped;
        delivery.setTap([&](const QImage& image, auto) { tapped.push_back(numberOf(image)); });
        fillUp(delivery, keeper);
        for (uint number = 3; number <= 20; ++number)
            QVERIFY(send(delivery, number));
        QCOMPARE(keeper.count(), 2);
        std::vector<uint> expected(20);
        std::iota(expected.begin(), expected.end(), 1U);
        QCOMPARE(tapped, expected);
    }

    void theTapSeesUncopiedPixelsAtTheirArrival()
    {
        FrameDelivery delivery([](const QImage&) {}, running);
        const uchar* seen = nullptr;
        std::chrono::steady_clock::time_point arrived;
        delivery.setTap([&](const QImage& image, auto arrival) {
            seen = image.constBits();
            arrived = arrival;
        });
        QImage frame = delivery.acquireFrame(frameSize);
        const uchar* pixels = frame.constBits();
        const auto before = std::chrono::steady_clock::now();
        delivery.deliver(std::move(frame));
        QCOMPARE(seen, pixels);
        QVERIFY(arrived >= before && arrived <= std::chrono::steady_clock::now());
    }

    void theTapGetsNothingWhilePausedOrWhenTaken()
    {
        std::atomic<bool> paused{false};
        FrameDelivery delivery([](const QImage&) {}, paused);
        int tapped = 0;
        delivery.setTap([&](const QImage&, auto) { ++tapped; });
        QImage frame = delivery.acquireFrame(frameSize);
        paused = true;
        delivery.deliver(std::move(frame));
        QCOMPARE(tapped, 0);
        paused = false;
        QVERIFY(send(delivery, 1));
        QCOMPARE(tapped, 1);
        delivery.setTap({});
        QVERIFY(send(delivery, 2));
        QCOMPARE(tapped, 1);
    }

    void theTapBeginsWithTheFrameThatIsShown()
    {
        Keeper keeper;
        std::atomic<bool> paused{false};
        FrameDelivery delivery(std::ref(keeper), paused);
        fillUp(delivery, keeper);
        QVERIFY(send(delivery, 3)); // Waits, and nobody will see it.
        paused = true;
        std::vector<uint> tapped;
        std::chrono::steady_clock::time_point arrived;
        const auto before = std::chrono::steady_clock::now();
        delivery.setTap([&](const QImage& image, auto arrival) {
            tapped.push_back(numberOf(image));
            arrived = arrival;
        });
        QCOMPARE(tapped, std::vector<uint>{2});
        QVERIFY(arrived >= before && arrived <= std::chrono::steady_clock::now());
        paused = false;
        QVERIFY(send(delivery, 4));
        QCOMPARE(tapped, (std::vector<uint>{2, 4}));
    }

    void theShownFrameCostsTheDeviceNoBuffer()
    {
        Keeper keeper;
        FrameDelivery delivery(std::ref(keeper), running);
        fillUp(delivery, keeper);
        QVERIFY(send(delivery, 3));
        const QImage filled = delivery.acquireFrame(frameSize);
        const QImage spare = delivery.acquireFrame(frameSize);
        QVERIFY(!filled.isNull() && !spare.isNull());
    }

    void onceItEndedNoCallOfTheViewerIsUnderWayOrFollows()
    {
        // Each round ends at another moment of the viewer's.
        for (uint round = 0; round < 50; ++round) {
            std::atomic<int> begun{0};
            std::atomic<int> done{0};
            const auto slowViewer = [&begun, &done](const QImage&) {
                ++begun;
                std::this_thread::sleep_for(1ms);
                ++done;
            };
            auto delivery = std::make_unique<FrameDelivery>(slowViewer, running);
            for (uint number = 0; number < round; ++number)
                send(*delivery, number);
            delivery.reset();
            const int calls = begun;
            QCOMPARE(done.load(), calls);
            QTest::qWait(5);
            QCOMPARE(begun.load(), calls);
        }
    }

private:
    static void fillUp(FrameDelivery& delivery, Keeper& keeper, const QSize& size = frameSize)
    {
        for (uint number = 1; number <= 2; ++number) {
            QVERIFY(send(delivery, number, size));
            QVERIFY(keeper.waitFor(static_cast<int>(number)));
        }
    }

    static QElapsedTimer started()
    {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }

    const std::atomic<bool> running{false};
};

QTEST_GUILESS_MAIN(tst_FrameDelivery)
#include "tst_FrameDelivery.moc"
