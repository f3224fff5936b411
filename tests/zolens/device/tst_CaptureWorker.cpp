#include "device/CaptureSession.h"
#include "device/CaptureWorker.h"
#include "support/NoNewThread.h"
#include "support/ProcessUse.h"
#include "support/TimeLimits.h"
#include "zolens/FrameCollector.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <future>
#include <thread>

using namespace std::chrono_literals;
using zolens::CaptureSession;
using zolens::CaptureWork;
using zolens::CaptureWorker;

class tst_CaptureWorker final : public QObject
{
    Q_OBJECT

private slots:
    void runsUnderItsNameUntilItIsCancelled()
    {
        const auto session = std::make_shared<CaptureSession>(nullptr);
        {
            const CaptureWorker worker(
                {session, [session] { session->wake.sleepFor(60s); }, "device-thread"});
            QTRY_COMPARE(processuse::threadsNamed("device-thread"), 1);
            QVERIFY(!session->finished.isSettled());
        }
        QVERIFY(session->finished.isSettled());
    }

    void letsGoOfTheDeviceBeforeItTellsItsEnd()
    {
        const auto session = std::make_shared<CaptureSession>(nullptr);
        std::atomic<bool> toldBefore{true};
        auto device = std::shared_ptr<void>(
            nullptr, [&toldBefore, session](void*) { toldBefore = session->finished.isSettled(); });
        CaptureWork work = {session,
                            [session, owned = std::move(device)] { session->wake.sleepFor(60s); },
                            "device-thread"};
        const CaptureWorker worker(work);
        work.run = nullptr;
        session->wake.cancel();
        QVERIFY(session->finished.await(30s).has_value());
        QVERIFY(!toldBefore);
    }

    /// A device that was never found, or lost for good, leaves nobody waiting.
    void itsEndIsAnAnswerToAllWhoWait()
    {
        const auto session = std::make_shared<CaptureSession>(nullptr);
        auto still = std::async(std::launch::async, [session] { return session->still.take(30s); });
        QTRY_VERIFY(session->still.isPending());
        QElapsedTimer timer;
        timer.start();
        const CaptureWorker worker({session, [] {}, "device-thread"});
        QCOMPARE(session->opened.await(30s), std::optional(false));
        QCOMPARE(session->finished.await(30s), std::optional(true));
        QVERIFY(still.get().isNull());
        QVERIFY(!session->controls());
        QVERIFY(timer.elapsed() < 15000);
    }

    void whereNoThreadIsLeftAllWhoWaitGetAnAnswer()
    {
        const auto session = std::make_shared<CaptureSession>(nullptr);
        bool ran = false;
        {
            const NoNewThread limit;
            const CaptureWorker worker({session, [&ran] { ran = true; }, "device-thread"});
            QCOMPARE(session->opened.await(0ms), std::optional(false));
            QCOMPARE(session->finished.await(0ms), std::optional(true));
        }
        QVERIFY(!ran);
    }

    /// Who has not seen yet that the device is gone asks for a still after its end.
    void nobodyWaitsForAStillAfterItsEnd()
    {
        const auto session = std::make_shared<CaptureSession>(nullptr);
        const CaptureWorker worker({session, [] {}, "device-thread"});
        QVERIFY(session->finished.await(30s).has_value());
        QElapsedTimer timer;
        timer.start();
        QVERIFY(session->still.take(4s).isNull());
        QVERIFY2(timer.elapsed() < timelimits::atOnce,
                 qPrintable(QString::number(timer.elapsed())));
    }

    void anOpeningThatSucceededStaysOne()
    {
        const auto session = std::make_shared<CaptureSession>(nullptr);
        const CaptureWorker worker(
            {session, [session] { session->opened.settle(true); }, "device-thread"});
        QVERIFY(session->finished.await(30s).has_value());
        QCOMPARE(session->opened.await(0ms), std::optional(true));
    }

    void leavesAHangingDeviceBehindWhichTouchesNoSinkLater()
    {
        FrameCollector sink;
        std::promise<void> device;
        const auto answer = device.get_future().share();
        auto session = std::make_shared<CaptureSession>(&sink);
        const std::weak_ptr<CaptureSession> watched = session;
        QElapsedTimer timer;
        {
            const CaptureWorker worker({session,
                                        [session, answer] {
                                            session->opened.settle(true);
                                            answer.wait();
                                            session->sink.deliver(QImage());
                                        },
                                        "device-thread"});
            QVERIFY(session->opened.await(30s).has_value());
            timer.start();
        }
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
        session.reset();
        QVERIFY(!watched.expired());
        device.set_value();
        QTRY_VERIFY(watched.expired());
        QCOMPARE(sink.count(), 0);
        QTRY_COMPARE(processuse::threadsNamed("device-thread"), 0);
    }
};

QTEST_GUILESS_MAIN(tst_CaptureWorker)
#include "tst_CaptureWorker.moc"
