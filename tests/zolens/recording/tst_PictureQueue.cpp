#include "recording/PictureQueue.h"

#include <QtTest>

#include <thread>

using zolens::Picture;
using zolens::PicturePool;
using zolens::PictureQueue;
using namespace std::chrono_literals;
using Clock = PictureQueue::Clock;

namespace {

const QSize small(64, 48);

} // namespace

class tst_PictureQueue final : public QObject
{
    Q_OBJECT

private slots:
    void handsOutInOrder()
    {
        fill(small, 3);
        for (int number = 0; number < 3; ++number)
            QCOMPARE(queue->take()->pts, int64_t{number});
    }

    void hasRoomForSo_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("pictures");
        QTest::newRow("small") << small << 16;
        QTest::newRow("high definition") << QSize(1920, 1080) << 16;
        // 128 MiB hold ten pictures of 12.4 MB.
        QTest::newRow("four times that") << QSize(3840, 2160) << 10;
        QTest::newRow("far too large") << QSize(20000, 10000) << 2;
    }

    void hasRoomForSo()
    {
        QFETCH(QSize, size);
        QFETCH(int, pictures);
        int taken = 0;
        while (taken < 100 && queue->hasRoomFor(size)) {
            queue->put(pool.acquire(small));
            ++taken;
        }
        QCOMPARE(taken, pictures);
        QVERIFY(queue->take());
        QVERIFY(queue->hasRoomFor(size));
    }

    void closedTakesNoMoreButHandsOutWhatWaits()
    {
        fill(small, 2);
        queue->close(Clock::now() + 1h);
        QVERIFY(!queue->hasRoomFor(small));
        queue->put(pool.acquire(small));
        QVERIFY(queue->take());
        QVERIFY(queue->take());
        QVERIFY(!queue->take());
    }

    void pastItsEndNothingIsHandedOut()
    {
        fill(small, 2);
        queue->close(Clock::now());
        QVERIFY(!queue->take());
    }

    void aLaterEndDoesNotPutOffAnEarlierOne()
    {
        fill(small, 1);
        queue->close(Clock::now());
        queue->close(Clock::now() + 1h);
        QVERIFY(!queue->take());
    }

    void closingWakesWhoWaits()
    {
        std::thread taker([this] { QVERIFY(!queue->take()); });
        QTest::qSleep(20);
        queue->close(Clock::now());
        taker.join();
    }

    void picturesOutliveTheirPool()
    {
        Picture picture;
        {
            PicturePool shortLived;
            picture = shortLived.acquire(small);
        }
        picture->data[0][0] = 7;
        QCOMPARE(int(picture->data[0][0]), 7);
    }

    void buffersGoAround()
    {
        const uchar* first = pool.acquire(small)->data[0];
        QCOMPARE(pool.acquire(small)->data[0], first);
    }

    void thereAreNoPicturesWithoutArea()
    {
        QVERIFY(!pool.acquire(QSize(0, 0)));
        QVERIFY(!pool.acquire(QSize(0, 48)));
    }

    void init() { queue = std::make_unique<PictureQueue>(); }

private:
    void fill(const QSize& size, int count)
    {
        for (int number = 0; number < count; ++number) {
            Picture picture = pool.acquire(size);
            picture->pts = number;
            queue->put(std::move(picture));
        }
    }

    PicturePool pool;
    std::unique_ptr<PictureQueue> queue;
};

QTEST_GUILESS_MAIN(tst_PictureQueue)
#include "tst_PictureQueue.moc"
