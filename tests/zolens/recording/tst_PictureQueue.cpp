#include "recording/PictureQueue.h"

#include <QtTest>

#include <future>

using zolens::Picture;
using zolens::PicturePool;
using zolens::PictureQueue;
using namespace std::chrono_literals;
using Clock = PictureQueue::Clock;

namespace {

const QSize small(64, 48);
constexpr auto patience = 5s;

/// The rows of the picture's luma.
QByteArray rowsOf(const Picture& picture)
{
    QByteArray rows;
    for (int y = 0; y < picture->height; ++y)
        rows.append(reinterpret_cast<const char*>(picture->data[0] + y * picture->linesize[0]),
                    picture->width);
    return rows;
}

void fillWith(const Picture& picture, uchar value)
{
    for (int y = 0; y < picture->height; ++y)
        std::fill_n(picture->data[0] + y * picture->linesize[0], picture->width, value);
}

} // namespace

class tst_PictureQueue final : public QObject
{
    Q_OBJECT

private slots:
    void handsOutInOrder()
    {
        fill(small, 3);
        for (int number = 0; number < 3; ++number)
            QCOMPARE(queue->take(patience)->pts, int64_t{number});
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
        QVERIFY(queue->take(patience));
        QVERIFY(queue->hasRoomFor(size));
    }

    void closedTakesNoMoreButHandsOutWhatWaits()
    {
        fill(small, 2);
        queue->close(Clock::now() + 1h);
        QVERIFY(!queue->hasRoomFor(small));
        queue->put(pool.acquire(small));
        QVERIFY(queue->take(patience));
        QVERIFY(queue->take(patience));
        QVERIFY(!queue->take(patience));
    }

    void pastItsEndNothingIsHandedOut()
    {
        fill(small, 2);
        queue->close(Clock::now());
        QVERIFY(!queue->take(patience));
    }

    void aLaterEndDoesNotPutOffAnEarlierOne()
    {
        fill(small, 1);
        queue->close(Clock::now());
        queue->close(Clock::now() + 1h);
        QVERIFY(!queue->take(patience));
    }

    void waitsNoLongerThanAsked()
    {
        QVERIFY(!queue->take(20ms));
        QVERIFY(!queue->isOver());
        fill(small, 1);
        QVERIFY(queue->take(20ms));
    }

    void isOverOnceItIsClosedAndEmptyOrDue()
    {
        fill(small, 1);
        queue->close(Clock::now() + 1h);
        QVERIFY(!queue->isOver());
        queue->close(Clock::now());
        QVERIFY(queue->isOver());
    }

    void closingWakesWhoWaits()
    {
        auto taken =
            std::async(std::launch::async, [this] { return queue->take(patience) != nullptr; });
        QCOMPARE(int(taken.wait_for(50ms)), int(std::future_status::timeout));
        queue->close(Clock::now());
        QVERIFY(!taken.get());
    }

    void picturesOutliveTheirPool()
    {
        Picture picture;
        {
            PicturePool shortLived;
            picture = shortLived.acquire(small);
            fillWith(picture, 7);
        }
        // Would get the same memory if the first one's were free.
        const Picture other = pool.acquire(small);
        fillWith(other, 8);
        QCOMPARE(rowsOf(picture), QByteArray(small.width() * small.height(), 7));
        QCOMPARE(rowsOf(other), QByteArray(small.width() * small.height(), 8));
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
