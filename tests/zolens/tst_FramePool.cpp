#include "frames/FramePool.h"

#include "support/ProcessUse.h"

#include <QtTest>

#include <set>
#include <thread>

using processuse::residentBytes;
using zolens::FramePool;

class tst_FramePool final : public QObject
{
    Q_OBJECT

private slots:
    void givesWritableRgbImages()
    {
        FramePool pool(1);
        QImage image = pool.acquire(QSize(33, 7));
        QCOMPARE(image.size(), QSize(33, 7));
        QCOMPARE(image.format(), QImage::Format_RGB32);
        const uchar* before = image.constBits();
        image.fill(Qt::red);
        QCOMPARE(image.constBits(), before);
        QCOMPARE(image.pixel(32, 6), qRgb(255, 0, 0));
    }

    void alignsEveryRowToCacheLines_data()
    {
        QTest::addColumn<int>("width");
        for (const int width : {1, 15, 16, 17, 641, 1920})
            QTest::addRow("%d", width) << width;
    }

    void alignsEveryRowToCacheLines()
    {
        QFETCH(int, width);
        FramePool pool(1);
        const QImage image = pool.acquire(QSize(width, 3));
        for (int y = 0; y < 3; ++y)
            QCOMPARE(reinterpret_cast<quintptr>(image.constScanLine(y)) % 64, quintptr{0});
    }

    void neverExceedsItsCapacity()
    {
        FramePool pool(3);
        QCOMPARE(pool.capacity(), 3);
        std::vector<QImage> images;
        for (int i = 0; i < 3; ++i) {
            images.push_back(pool.acquire(QSize(64, 64)));
            QVERIFY(!images.back().isNull());
            QCOMPARE(pool.inUse(), i + 1);
        }
        QVERIFY(pool.acquire(QSize(64, 64)).isNull());
        QVERIFY(pool.acquire(QSize(32, 32)).isNull());
        images.pop_back();
        QCOMPARE(pool.inUse(), 2);
        QVERIFY(!pool.acquire(QSize(64, 64)).isNull());
    }

    void aBufferComesBackWithItsLastCopy()
    {
        FramePool pool(1);
        QImage image = pool.acquire(QSize(8, 8));
        QImage copy = image;
        image = QImage();
        QCOMPARE(pool.inUse(), 1);
        copy = QImage();
        QCOMPARE(pool.inUse(), 0);
    }

    void usesTheSameBuffersAgain()
    {
        FramePool pool(2);
        std::set<const uchar*> buffers;
        for (int i = 0; i < 20; ++i)
            buffers.insert(pool.acquire(QSize(640, 480)).constBits());
        QCOMPARE(buffers.size(), std::size_t{1});
    }

    void imagesOutliveThePool()
    {
        QImage image;
        {
            FramePool pool(2);
            image = pool.acquire(QSize(100, 100));
        }
        image.fill(Qt::green);
        QCOMPARE(image.pixel(99, 99), qRgb(0, 255, 0));
    }

    void anotherSizeFreesTheOldBuffers()
    {
        constexpr qint64 buffer = 4096LL * 2048 * 4;
        FramePool pool(3);
        const qint64 start = residentBytes();
        fillAll(pool, QSize(4096, 2048));
        QVERIFY(residentBytes() - start > 3 * buffer * 9 / 10);
        QVERIFY(!pool.acquire(QSize(16, 16)).isNull());
        QVERIFY(residentBytes() - start < buffer / 2);
    }

    void buffersOfAnOldSizeGoWhenTheyComeBack()
    {
        constexpr qint64 buffer = 4096LL * 2048 * 4;
        FramePool pool(2);
        const qint64 start = residentBytes();
        QImage old = pool.acquire(QSize(4096, 2048));
        old.fill(0);
        const QImage fresh = pool.acquire(QSize(16, 16));
        QVERIFY(residentBytes() - start > buffer * 9 / 10);
        old = QImage();
        QVERIFY(residentBytes() - start < buffer / 2);
    }

    void refusesSizesThatAreNone_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("invalid") << QSize();
        QTest::newRow("empty") << QSize(0, 5);
        QTest::newRow("negative") << QSize(-4, -4);
        QTest::newRow("beyond memory") << QSize(2'000'000'000, 2'000'000'000);
    }

    void refusesSizesThatAreNone()
    {
        QFETCH(QSize, size);
        FramePool pool(1);
        QVERIFY(pool.acquire(size).isNull());
        QCOMPARE(pool.inUse(), 0);
    }

    void servesManyThreads()
    {
        FramePool pool(4);
        std::atomic<int> served{0};
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&pool, &served, t] {
                for (int i = 0; i < 500; ++i) {
                    QImage image = pool.acquire(QSize(16 + t % 2, 16));
                    image.fill(static_cast<uint>(i));
                    served += image.isNull() ? 0 : 1;
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(served.load(), 2000);
        QCOMPARE(pool.inUse(), 0);
    }

private:
    static void fillAll(FramePool& pool, const QSize& size)
    {
        std::vector<QImage> images;
        for (int i = 0; i < pool.capacity(); ++i) {
            images.push_back(pool.acquire(size));
            images.back().fill(i);
        }
    }
};

QTEST_APPLESS_MAIN(tst_FramePool)
#include "tst_FramePool.moc"
