#include "device/WaitBudget.h"

#include <QtTest>

using namespace std::chrono_literals;
using zolens::WaitBudget;

class tst_WaitBudget final : public QObject
{
    Q_OBJECT

private:
    const WaitBudget::Clock::time_point start = WaitBudget::Clock::now();

private slots:
    void allIsLeftAtFirst()
    {
        WaitBudget budget(1s, 3s);
        QVERIFY(budget.left(start) == 1s);
    }

    void waitsAddUp()
    {
        WaitBudget budget(1s, 3s);
        budget.spend(start, start + 300ms);
        budget.spend(start + 500ms, start + 900ms);
        QVERIFY(budget.left(start + 900ms) == 300ms);
    }

    void nothingIsLeftAfterTooLongAWait()
    {
        WaitBudget budget(1s, 3s);
        budget.spend(start, start + 1700ms);
        QVERIFY(budget.left(start + 1700ms) == 0ms);
    }

    void eachWaitComesBackWhenTheSpanHasPassed()
    {
        WaitBudget budget(1s, 3s);
        budget.spend(start, start + 300ms);
        budget.spend(start + 1s, start + 1700ms);
        QVERIFY(budget.left(start + 3299ms) == 0ms);
        QVERIFY(budget.left(start + 3300ms) == 300ms);
        QVERIFY(budget.left(start + 4700ms) == 1s);
    }
};

QTEST_GUILESS_MAIN(tst_WaitBudget)
#include "tst_WaitBudget.moc"
