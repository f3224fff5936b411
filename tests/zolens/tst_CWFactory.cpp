#include <zolens/CWFactory.h>
#include <zolens/CWUVCFilter.h>
#include <zolens/MyCamera.h>

#include <QtTest>

#include <thread>

class tst_CWFactory final : public QObject
{
    Q_OBJECT

private slots:
    void listsTheSimulatedMicroscopeLast()
    {
        CWUVCFilter filter;
        CWFactory::setUVCFilter(&filter);
        const auto devices = CWFactory::videoDeviceList();
        CWFactory::setUVCFilter(nullptr);
        QVERIFY(!devices.empty());
        QCOMPARE(devices.back().type, std::int32_t{3});
        QCOMPARE(devices.back().index, std::int32_t{0});
        QCOMPARE(devices.back().name, std::string("Simulated microscope"));
        QVERIFY(devices.back().address.empty());
    }

    void opensWhatItListsLast()
    {
        const auto device = CWFactory::videoDeviceList().back();
        MyCamera camera;
        QVERIFY(camera.open(device.type, device.index, true));
        QCOMPARE(camera.deviceInfo().name, device.name);
    }

    void aCaptureDeviceThatIsNotThereDoesNotOpen()
    {
        MyCamera camera;
        QVERIFY(!camera.open(CWDevice_Uvc, 12345, false));
        QVERIFY(!camera.open(CWDevice_OtherCapture, -1, false));
        QVERIFY(!camera.camera);
    }

    void theNetworkScanMayBeStoppedAtAnyTime()
    {
        CWFactory::stopTarnlinkDeviceScan();
        CWFactory::startTarnlinkDeviceScan(1);
        CWFactory::stopTarnlinkDeviceScan();
        CWFactory::stopTarnlinkDeviceScan();
        QVERIFY(CWFactory::tarnlinkDeviceList().empty());
    }

    void listsFromAnyThread()
    {
        std::atomic<int> found{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&found] {
                for (int round = 0; round < 50; ++round) {
                    found += CWFactory::videoDeviceList().empty() ? 0 : 1;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QCOMPARE(found.load(), 200);
    }
};

QTEST_GUILESS_MAIN(tst_CWFactory)
#include "tst_CWFactory.moc"
