#include "support/fakev4l2/CameraBench.h"
#include "v4l2/CaptureScan.h"

#include <QtTest>

using namespace std::chrono_literals;

using zolens::captureNode;
using zolens::V4l2Host;

namespace {

std::vector<zolens::CaptureNode> captureNodes(const V4l2Host& host)
{
    return zolens::CaptureScan().nodes(host, 10s);
}

std::vector<_tag_VideoDeviceInfo> captureDevices(const V4l2Host& host, const CWUVCFilter& filter)
{
    return zolens::captureDevices(captureNodes(host), filter);
}

std::shared_ptr<FakeCamera> cameraNamed(const QByteArray& name)
{
    auto camera = CameraBench::webcam();
    camera->name = name;
    return camera;
}

CWUVCFilter filterOf(const std::vector<CWUVCFilterItem>& rows)
{
    CWUVCFilter filter;
    for (const CWUVCFilterItem& row : rows)
        filter.addItem(row);
    return filter;
}

} // namespace

class tst_CaptureNodes final : public QObject
{
    Q_OBJECT

private slots:
    void leavesOutNodesWithoutPictures()
    {
        CameraBench bench;
        auto metadata = cameraNamed("Metadata");
        metadata->deviceCaps = V4L2_CAP_META_CAPTURE | V4L2_CAP_STREAMING;
        auto output = cameraNamed("Output");
        output->deviceCaps = V4L2_CAP_VIDEO_OUTPUT | V4L2_CAP_STREAMING;
        auto slow = cameraNamed("Read only");
        slow->deviceCaps = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_READWRITE;
        bench.plug(0, cameraNamed("Camera"));
        bench.plug(1, metadata);
        bench.plug(2, output);
        bench.plug(3, slow);
        const auto nodes = captureNodes(bench.host());
        QCOMPARE(nodes.size(), std::size_t(1));
        QCOMPARE(nodes.front().name, std::string("Camera"));
        QCOMPARE(bench.system->openHandles(), 0);
    }

    void listsByNumber()
    {
        CameraBench bench;
        for (const int number : {10, 2, 0})
            bench.plug(number, cameraNamed("Camera"));
        QFile other(bench.host().devices + QStringLiteral("/video-tool"));
        QVERIFY(other.open(QIODevice::WriteOnly));
        const auto nodes = captureNodes(bench.host());
        QCOMPARE(nodes.size(), std::size_t(3));
        QCOMPARE(nodes[0].number, 0);
        QCOMPARE(nodes[1].number, 2);
        QCOMPARE(nodes[2].number, 10);
    }

    void readsTheUsbIds()
    {
        CameraBench bench;
        bench.plug(0, cameraNamed("Camera"), "046d", "0825");
        bench.plug(1, cameraNamed("Grabber"));
        QCOMPARE(captureNode(bench.host(), 0)->vendorId, std::uint16_t(0x046d));
        QCOMPARE(captureNode(bench.host(), 0)->productId, std::uint16_t(0x0825));
        QCOMPARE(captureNode(bench.host(), 1)->vendorId, std::uint16_t(0));
    }

    void survivesRubbishIds()
    {
        CameraBench bench;
        bench.plug(0, cameraNamed("Camera"), "046d0825ff", "");
        QCOMPARE(captureNode(bench.host(), 0)->vendorId, std::uint16_t(0));
    }

    void takesANameThatFillsItsField()
    {
        CameraBench bench;
        bench.plug(0, cameraNamed(QByteArray(40, 'x')));
        QCOMPARE(captureNode(bench.host(), 0)->name, std::string(32, 'x'));
    }

    void namesACameraOnce_data()
    {
        QTest::addColumn<QByteArray>("card");
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("twice") << QByteArray("Cam: Cam") << QByteArray("Cam");
        QTest::newRow("cut off") << QByteArray("HD Webcam: HD We") << QByteArray("HD Webcam");
        QTest::newRow("different") << QByteArray("Maker: Cam") << QByteArray("Maker: Cam");
        QTest::newRow("longer") << QByteArray("Cam: Cam 2") << QByteArray("Cam: Cam 2");
        QTest::newRow("nothing behind") << QByteArray("Cam: ") << QByteArray("Cam");
        QTest::newRow("empty") << QByteArray("") << QByteArray("");
    }

    void namesACameraOnce()
    {
        QFETCH(QByteArray, card);
        QFETCH(QByteArray, name);
        CameraBench bench;
        bench.plug(0, cameraNamed(card));
        QCOMPARE(captureNode(bench.host(), 0)->name, name.toStdString());
    }

    void leavesOutWhatCannotBeAsked()
    {
        CameraBench bench;
        bench.plug(0, cameraNamed("Camera"));
        bench.system->fail(VIDIOC_QUERYCAP, EIO);
        QVERIFY(captureNodes(bench.host()).empty());
        QVERIFY(!captureNodes(bench.host()).empty());
        QVERIFY(!captureNode(bench.host(), 5));
        QVERIFY(captureNodes({bench.system, QStringLiteral("/nowhere"), {}}).empty());
    }

    void namesAModelByTheFirstRowThatFits()
    {
        CameraBench bench;
        bench.plug(4, cameraNamed("Own name"), "046d", "0825");
        const CWUVCFilter filter = filterOf({{0x046d, 0x0826, "Other product", 0},
                                             {0x046e, 0x0825, "Other maker", 0},
                                             {0x046d, 0x0825, "Model", 0},
                                             {0x046d, 0, "Any of the maker", 0}});
        const auto devices = captureDevices(bench.host(), filter);
        QCOMPARE(devices.size(), std::size_t(1));
        QCOMPARE(devices[0].name, std::string("Model"));
        QCOMPARE(devices[0].type, std::int32_t(0));
        QCOMPARE(devices[0].index, std::int32_t(4));
        QVERIFY(devices[0].address.empty());
    }

    void aZeroIdFitsAny()
    {
        CameraBench bench;
        bench.plug(0, cameraNamed("Own name"), "1234", "5678");
        QCOMPARE(captureDevices(bench.host(), filterOf({{0x1234, 0, "", 0}}))[0].name,
                 std::string("Own name"));
        QCOMPARE(captureDevices(bench.host(), filterOf({{0, 0x5678, "Chip", 0}}))[0].name,
                 std::string("Chip"));
        QVERIFY(captureDevices(bench.host(), filterOf({{0x4321, 0, "", 0}})).empty());
    }

    void devicesWithoutUsbIdAreOfTheOtherClass()
    {
        CameraBench bench;
        bench.plug(0, cameraNamed("Grabber"));
        const auto devices = captureDevices(bench.host(), CameraBench::wildcards());
        QCOMPARE(devices.size(), std::size_t(1));
        QCOMPARE(devices[0].type, std::int32_t(1));
        QVERIFY(captureDevices(bench.host(), filterOf({{0, 0, "", 0}})).empty());
    }

    void rowsOfOtherClassesFitNoCaptureDevice()
    {
        CameraBench bench;
        bench.plug(0, cameraNamed("Camera"), "1234", "5678");
        QVERIFY(captureDevices(bench.host(), filterOf({{0, 0, "", 2}, {0, 0, "", 3}})).empty());
    }

    void listsInTheOrderOfTheRows()
    {
        CameraBench bench;
        bench.plug(0, cameraNamed("Grabber"));
        bench.plug(1, cameraNamed("Unknown"), "1111", "1111");
        bench.plug(2, cameraNamed("Second"), "2222", "0002");
        bench.plug(3, cameraNamed("First"), "2222", "0001");
        const auto devices = captureDevices(
            bench.host(),
            filterOf({{0x2222, 1, "", 0}, {0x2222, 0, "", 0}, {0, 0, "", 0}, {0, 0, "", 1}}));
        QCOMPARE(devices.size(), std::size_t(4));
        QCOMPARE(devices[0].name, std::string("First"));
        QCOMPARE(devices[1].name, std::string("Second"));
        QCOMPARE(devices[2].name, std::string("Unknown"));
        QCOMPARE(devices[3].name, std::string("Grabber"));
    }

    void twoOfAKindStayApart()
    {
        CameraBench bench;
        bench.plug(0, cameraNamed("Twin"), "1234", "5678");
        bench.plug(2, cameraNamed("Twin"), "1234", "5678");
        const auto devices = captureDevices(bench.host(), CameraBench::wildcards());
        QCOMPARE(devices.size(), std::size_t(2));
        QVERIFY(devices[0].index != devices[1].index);
    }
};

QTEST_GUILESS_MAIN(tst_CaptureNodes)
#include "tst_CaptureNodes.moc"
