#include "device/StillRequest.h"
#include "device/WakeUp.h"

#include <QElapsedTimer>
#include <QtTest>

#include <poll.h>

#include <thread>

using namespace std::chrono_literals;
using zolens::StillRequest;

namespace {

QImage picture(Qt::GlobalColor color)
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// Brings the frames one after the other as soon as somebody waits.
std::thread workerWith(StillRequest& request, const std::vector<QImage>& frames)
{
    return std::thread([&request, frames] {
        while (!request.isPending())
            std::this_thread::sleep_for(1ms);
        for (const QImage& frame : frames)
            request.fulfil(frame);
    });
}

} // namespace

class tst_StillRequest final : public QObject
{
    Q_OBJECT

private slots:
    void handsOverTheNextFrame()
    {
        zolens::WakeUp bell;
        StillRequest request(bell);
        std::thread worker = workerWith(request, {picture(Qt::red), picture(Qt::blue)});
        const QImage still = request.take(30s);
        worker.join();
        QCOMPARE(still, picture(Qt::red));
        QVERIFY(!request.isPending());
    }

    void callsAWorkerThatWaitsForSomethingElse()
    {
        zolens::WakeUp bell;
        StillRequest request(bell);
        std::thread worker([&bell, &request] {
            pollfd waiting = {bell.descriptor(), POLLIN, 0};
            poll(&waiting, 1, 15000);
            request.fulfil(picture(Qt::red));
        });
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(request.take(30s), picture(Qt::red));
        QVERIFY(timer.elapsed() < 10000);
        worker.join();
    }

    /// As one does that ends.
    void aWorkerMaySendTheWaiterAwayWithoutAFrame()
    {
        zolens::WakeUp bell;
        StillRequest request(bell);
        QElapsedTimer timer;
        timer.start();
        std::thread worker = workerWith(request, {QImage()});
        QVERIFY(request.take(30s).isNull());
        worker.join();
        QVERIFY(timer.elapsed() < 15000);
    }

    void itsEndSendsTheWaiterAwayAndAllWhoComeLater()
    {
        zolens::WakeUp bell;
        StillRequest request(bell);
        std::thread worker([&request] {
            while (!request.isPending())
                std::this_thread::sleep_for(1ms);
            request.end();
        });
        QElapsedTimer timer;
        timer.start();
        QVERIFY(request.take(4s).isNull());
        worker.join();
        QVERIFY(request.take(4s).isNull());
        QVERIFY(!request.isPending());
        QVERIFY(timer.elapsed() < 3000);
    }

    void keepsNoFrameThatNobodyWaitsFor()
    {
        zolens::WakeUp bell;
        StillRequest request(bell);
        request.fulfil(picture(Qt::red));
        QVERIFY(request.take(50ms).isNull());
        // Too late: not for the next one either.
        QVERIFY(!request.isPending());
        request.fulfil(picture(Qt::red));
        QVERIFY(request.take(50ms).isNull());
    }
};

QTEST_APPLESS_MAIN(tst_StillRequest)
#include "tst_StillRequest.moc"
