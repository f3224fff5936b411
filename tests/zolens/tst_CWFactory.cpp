#include "DeviceClasses.h"
#include "support/NoNewThread.h"
#include "support/ProcessUse.h"
#include "support/fakev4l2/CameraBench.h"

#include <zolens/CWFactory.h>
#include <zolens/CWUVCFilter.h>
#include <zolens/MyCamera.h>

#include <QtTest>

#include <future>

namespace {

std::vector<std::string> listedNames()
{
    std::vector<std::string> names;
    for (const _tag_VideoDeviceInfo& device : CWFactory::videoDeviceList())
        names.push_back(device.name);
    return names;
}

} // namespace

class tst_CWFactory final : public QObject
{
    Q_OBJECT

private slots:
    // The first list of the process makes the scanner for USB3 Vision cameras, or a later one does.
    void aListWithoutThreadsIsCompleteTheNextTime()
    {
        const char* scanner = "zolens-control";
        QCOMPARE(processuse::threadsNamed(scanner), 0);
        CameraBench bench;
        bench.plug(0, CameraBench::webcam(), "1234", "5678");
        zolens::setCaptureHost(bench.host());
        {
            const NoNewThread limit;
            QCOMPARE(listedNames(), std::vector<std::string>{"Simulated microscope"});
        }
        QCOMPARE(listedNames().size(), std::size_t{2});
        QTRY_COMPARE(processuse::threadsNamed(scanner), 1);
        zolens::setCaptureHost({});
    }

    void listsTheSimulatedMicroscopeLast()
    {
        const auto devices = CWFactory::videoDeviceList();
        QVERIFY(!devices.empty());
        QCOMPARE(devices.back().type, std::int32_t{3});
        QCOMPARE(devices.back().index, std::int32_t{0});
        QCOMPARE(devices.back().name, std::string("Simulated microscope"));
        QVERIFY(devices.back().address.empty());
    }

    void aRowOfTheFilterShowsTheSimulatedMicroscope()
    {
        CWUVCFilter filter;
        CWFactory::setUVCFilter(&filter);
        const auto none = listedNames();
        filter.addItem({0, 0, {}, CWDevice_Simulated});
        const auto one = listedNames();
        CWFactory::setUVCFilter(nullptr);
        QVERIFY(none.empty());
        QCOMPARE(one, std::vector<std::string>{"Simulated microscope"});
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

    void listsEveryCameraToSeveralThreadsAtOnce()
    {
        CameraBench bench;
        bench.plug(0, CameraBench::webcam(), "1234", "5678");
        zolens::setCaptureHost(bench.host());
        const std::vector<std::string> expected = listedNames();
        QCOMPARE(expected.size(), std::size_t{2});
        const auto listOften = [&expected] {
            int complete = 0;
            for (int round = 0; round < 50; ++round)
                complete += listedNames() == expected ? 1 : 0;
            return complete;
        };
        std::vector<std::future<int>> callers;
        for (int i = 0; i < 4; ++i)
            callers.push_back(std::async(std::launch::async, listOften));
        for (std::future<int>& caller : callers)
            QCOMPARE(caller.get(), 50);
        zolens::setCaptureHost({});
    }
};

QTEST_GUILESS_MAIN(tst_CWFactory)
#include "tst_CWFactory.moc"
