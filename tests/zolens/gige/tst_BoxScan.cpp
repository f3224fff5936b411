#include "FakeBox.h"
#include "ImitatedBox.h"
#include "OtherNetwork.h"
#include "gige/BoxScan.h"
#include "support/NoNewThread.h"
#include "support/ProcessUse.h"
#include "support/TimeLimits.h"

#include <zolens/CWFactory.h>

#include <QElapsedTimer>
#include <QtTest>

using namespace std::chrono_literals;
using zolens::BoxScan;

namespace {

constexpr int patience = 20000;

FakeBox::Options secondBox()
{
    FakeBox::Options options;
    options.address = QStringLiteral("10.0.0.3");
    options.serialNumber = QStringLiteral("ORVO2");
    return options;
}

/// "name address" of each, in their order.
QStringList texts(const std::vector<_tag_VideoDeviceInfo>& devices)
{
    QStringList result;
    for (const _tag_VideoDeviceInfo& device : devices)
        result << QString::fromStdString(device.name + ' ' + device.address);
    return result;
}

} // namespace

class tst_BoxScan final : public QObject
{
    Q_OBJECT

private slots:
    void listsTheBoxesOfTheNetwork()
    {
        FakeBox first;
        FakeBox second(secondBox());
        QVERIFY(first.start());
        QVERIFY(second.start());
        const BoxScan scan(200ms);
        QVERIFY(scan.isRunning());
        const QStringList expected = {QStringLiteral("Aravis Fake (ORVO1) 10.0.0.2"),
                                      QStringLiteral("Aravis Fake (ORVO2) 10.0.0.3")};
        QTRY_COMPARE_WITH_TIMEOUT(texts(scan.boxes()), expected, patience);
        const auto boxes = scan.boxes();
        for (std::size_t i = 0; i < 2; ++i) {
            QCOMPARE(boxes[i].type, std::int32_t(7));
            QCOMPARE(boxes[i].index, std::int32_t(i));
        }
    }

    void followsBoxesThatGoAndCome()
    {
        FakeBox first;
        FakeBox second(secondBox());
        QVERIFY(first.start());
        QVERIFY(second.start());
        const BoxScan scan(100ms);
        QTRY_COMPARE_WITH_TIMEOUT(scan.boxes().size(), std::size_t(2), patience);
        first.kill();
        QTRY_COMPARE_WITH_TIMEOUT(texts(scan.boxes()),
                                  QStringList(QStringLiteral("Aravis Fake 10.0.0.3")), patience);
        QVERIFY(first.start());
        QTRY_COMPARE_WITH_TIMEOUT(scan.boxes().size(), std::size_t(2), patience);
    }

    void asksFromEveryAddressAgainAndAgain()
    {
        ImitatedBox box;
        QVERIFY(box.start());
        const BoxScan scan(100ms);
        for (const char* address : {"127.0.0.1", "10.0.0.1", "10.0.0.4"})
            QTRY_VERIFY_WITH_TIMEOUT(box.askers.count(QLatin1String(address)) >= 3, patience);
        for (const QByteArray& question : qAsConst(box.questions))
            QCOMPARE(question.toHex(), QByteArray("4211000200000001"));
    }

    void followsAddressesThatComeAndGo()
    {
        const QString address = QStringLiteral("10.0.2.1");
        ImitatedBox box;
        QVERIFY(box.start());
        const BoxScan scan(100ms);
        QTRY_VERIFY_WITH_TIMEOUT(box.askers.contains(QStringLiteral("10.0.0.1")), patience);
        QVERIFY(!box.askers.contains(address));
        QVERIFY(OtherNetwork::ip(QStringLiteral("address add 10.0.2.1/24 dev lo")));
        QTRY_VERIFY_WITH_TIMEOUT(box.askers.contains(address), patience);
        QVERIFY(OtherNetwork::ip(QStringLiteral("address del 10.0.2.1/24 dev lo")));
        // A round asks from five addresses that are heard here.
        constexpr int twoRounds = 11;
        QTRY_VERIFY_WITH_TIMEOUT(box.askers.lastIndexOf(address) < box.askers.size() - twoRounds,
                                 patience);
    }

    void listsOnlyThoseThatAnswerCorrectly()
    {
        const QByteArray good = BoxAnswerBytes().datagram();
        QByteArray refusal = good;
        refusal[0] = char(0x80);
        BoxAnswerBytes everybody;
        everybody.address = QByteArray(4, char(0xff));
        ImitatedBox box;
        QVERIFY(box.start());
        box.answers = {QByteArray(),
                       QByteArray("x"),
                       good.left(255),
                       good + good,
                       QByteArray(1400, char(0xff)),
                       refusal,
                       everybody.datagram(),
                       good};
        const BoxScan scan(100ms);
        const QStringList expected(QStringLiteral("Optics Cam 5 10.0.0.9"));
        QTRY_COMPARE_WITH_TIMEOUT(texts(scan.boxes()), expected, patience);
        const int questions = box.questions.size();
        QTRY_VERIFY_WITH_TIMEOUT(box.questions.size() >= questions + 20, patience);
        QCOMPARE(texts(scan.boxes()), expected);
    }

    void hearsABoxWhoseAddressBelongsToAnotherNetwork()
    {
        BoxAnswerBytes bytes;
        bytes.address = QByteArray::fromHex("a9fe0709");
        ImitatedBox stranger;
        stranger.isStranger = true;
        stranger.answers = {bytes.datagram()};
        {
            const OtherNetwork network(QStringLiteral("169.254.7.9/16"));
            QVERIFY(network.isReady());
            QVERIFY(stranger.start());
        }
        // Asked from two addresses, it answers twice. As on most machines there is a way to
        // everywhere; many systems take nothing from where none leads to.
        for (const char* step :
             {"address add 10.0.2.1/24 dev wire", "address add 10.0.3.1/24 dev wire",
              "link set wire up", "route add default via 10.0.2.77 dev wire"})
            QVERIFY(OtherNetwork::ip(QLatin1String(step)));
        FakeBox neighbour;
        QVERIFY(neighbour.start());
        const BoxScan scan(100ms);
        const QStringList expected = {QStringLiteral("Aravis Fake 10.0.0.2"),
                                      QStringLiteral("Optics Cam 5 169.254.7.9")};
        QTRY_COMPARE_WITH_TIMEOUT(texts(scan.boxes()), expected, patience);
        for (const char* address : {"10.0.2.1", "10.0.3.1"})
            QTRY_VERIFY_WITH_TIMEOUT(stranger.askers.count(QLatin1String(address)) >= 3, patience);
        QCOMPARE(texts(scan.boxes()), expected);
    }

    void staysQuickUnderAFloodOfAnswers()
    {
        ImitatedBox box;
        QVERIFY(box.start());
        for (int i = 0; i < 500; ++i) {
            BoxAnswerBytes bytes;
            bytes.address[2] = char(i >> 8);
            bytes.address[3] = char(i);
            box.answers << bytes.datagram();
        }
        auto scan = std::make_unique<BoxScan>(500ms);
        QTRY_COMPARE_WITH_TIMEOUT(scan->boxes().size(), zolens::BoxList::mostBoxes, patience);
        QElapsedTimer timer;
        timer.start();
        scan.reset();
        QVERIFY(timer.elapsed() < timelimits::atOnce);
    }

    void endsAtOnceAndLeavesNothing()
    {
        std::make_unique<BoxScan>(1s).reset();
        const auto before = processuse::settledHoldings();
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 100; ++i) {
            const BoxScan scan(1h);
            if (i % 2)
                QTest::qWait(5);
        }
        // Each could wait for an hour; one in a hundred may find the machine busy.
        QVERIFY2(timer.elapsed() < 10000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(processuse::growthSince(before), QString());
    }

    void theFactoryRunsOneScan()
    {
        FakeBox box;
        QVERIFY(box.start());
        QVERIFY(CWFactory::tarnlinkDeviceList().empty());
        CWFactory::stopTarnlinkDeviceScan();
        for (int round = 0; round < 2; ++round) {
            QVERIFY(CWFactory::startTarnlinkDeviceScan(1));
            QVERIFY(CWFactory::startTarnlinkDeviceScan(1));
            QTRY_COMPARE(processuse::threadsNamed("zolens-scan"), 1);
            QTRY_COMPARE_WITH_TIMEOUT(texts(CWFactory::tarnlinkDeviceList()),
                                      QStringList(QStringLiteral("Aravis Fake 10.0.0.2")),
                                      patience);
            CWFactory::stopTarnlinkDeviceScan();
            CWFactory::stopTarnlinkDeviceScan();
            QVERIFY(CWFactory::tarnlinkDeviceList().empty());
            QTRY_COMPARE(processuse::threadsNamed("zolens-scan"), 0);
        }
    }

    void whereNoThreadIsLeftThereIsNoScan()
    {
        {
            const NoNewThread limit;
            QVERIFY(!BoxScan(1s).isRunning());
            QVERIFY(!CWFactory::startTarnlinkDeviceScan(1));
        }
        QVERIFY(CWFactory::startTarnlinkDeviceScan(1));
        CWFactory::stopTarnlinkDeviceScan();
    }

    void anyIntervalIsTaken()
    {
        for (const unsigned int interval : {0U, 1U, std::numeric_limits<unsigned int>::max()}) {
            QVERIFY(CWFactory::startTarnlinkDeviceScan(interval));
            CWFactory::stopTarnlinkDeviceScan();
        }
    }

    /// The program may end without having stopped the scan.
    void aScanThatStillRunsEndsWithTheProgram() { QVERIFY(CWFactory::startTarnlinkDeviceScan(1)); }
};

QTEST_GUILESS_MAIN(tst_BoxScan)
#include "tst_BoxScan.moc"
