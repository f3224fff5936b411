#include "StartThread.h"

#include "support/NoNewThread.h"

#include <QtTest>

#include <memory>
#include <utility>

using zolens::startThread;

class tst_StartThread final : public QObject
{
    Q_OBJECT

private slots:
    void doesTheWorkOnAnotherThread()
    {
        std::thread::id worker;
        auto work = [&worker, owned = std::make_unique<int>(1)] {
            worker = std::this_thread::get_id();
        };
        std::thread thread = startThread(std::move(work));
        QVERIFY(thread.joinable());
        const std::thread::id id = thread.get_id();
        thread.join();
        QVERIFY(worker == id);
        QVERIFY(worker != std::this_thread::get_id());
    }

    void whereNoThreadIsLeftTheWorkIsLetGoOf()
    {
        bool worked = false;
        auto owned = std::make_shared<int>(1);
        const std::weak_ptr<int> watched = owned;
        {
            const NoNewThread limit;
            const std::thread thread =
                startThread([&worked, kept = std::move(owned)] { worked = *kept == 1; });
            QVERIFY(!thread.joinable());
        }
        QVERIFY(watched.expired());
        QVERIFY(!worked);
        std::thread again = startThread([&worked] { worked = true; });
        QVERIFY(again.joinable());
        again.join();
        QVERIFY(worked);
    }
};

QTEST_GUILESS_MAIN(tst_StartThread)
#include "tst_StartThread.moc"
