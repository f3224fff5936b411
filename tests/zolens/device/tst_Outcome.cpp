#include "device/Outcome.h"

#include <QElapsedTimer>
#include <QtTest>

#include <future>
#include <thread>

using namespace std::chrono_literals;
using zolens::Outcome;

class tst_Outcome final : public QObject
{
    Q_OBJECT

private slots:
    void wakesAllWhoWait_data()
    {
        QTest::addColumn<bool>("success");
        QTest::newRow("yes") << true;
        QTest::newRow("no") << false;
    }

    void wakesAllWhoWait()
    {
        QFETCH(bool, success);
        Outcome outcome;
        QElapsedTimer timer;
        timer.start();
        const auto wait = [&outcome] { return outcome.await(30s); };
        auto first = std::async(std::launch::async, wait);
        auto second = std::async(std::launch::async, wait);
        // Neither has come back without a decision.
        QVERIFY(first.wait_for(50ms) == std::future_status::timeout);
        QVERIFY(second.wait_for(50ms) == std::future_status::timeout);
        outcome.settle(success);
        QCOMPARE(first.get(), std::optional(success));
        QCOMPARE(second.get(), std::optional(success));
        QVERIFY(timer.elapsed() < 15000);
    }

    void nobodyWaitsLongerThanTheirPatience()
    {
        Outcome outcome;
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(outcome.await(100ms), std::optional<bool>());
        QVERIFY(timer.elapsed() >= 100);
        QVERIFY(!outcome.isSettled());
    }

    void aLateDecisionIsThereForTheNextToAsk()
    {
        Outcome outcome;
        QVERIFY(!outcome.await(1ms));
        std::thread([&outcome] { outcome.settle(true); }).join();
        QVERIFY(outcome.isSettled());
        QCOMPARE(outcome.await(0ms), std::optional(true));
    }

    void onlyTheFirstDecisionCounts()
    {
        Outcome outcome;
        outcome.settle(false);
        outcome.settle(true);
        QCOMPARE(outcome.await(0ms), std::optional(false));
    }
};

QTEST_APPLESS_MAIN(tst_Outcome)
#include "tst_Outcome.moc"
