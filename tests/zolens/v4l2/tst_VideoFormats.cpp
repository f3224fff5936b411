#include "support/fakev4l2/CameraBench.h"
#include "v4l2/V4l2Device.h"
#include "v4l2/VideoFormats.h"

#include <QtTest>

using zolens::V4l2Device;
using zolens::VideoFormat;
using zolens::videoFormats;

using Sizes = std::vector<QSize>;

class tst_VideoFormats final : public QObject
{
    Q_OBJECT

private:
    std::vector<VideoFormat> formatsOf(const std::vector<FakeFormat>& offered)
    {
        camera = CameraBench::webcam();
        camera->formats = offered;
        bench.plug(0, camera, "1234", "5678");
        const V4l2Device device(bench.system, bench.node(0));
        return videoFormats(device);
    }

    CameraBench bench;
    std::shared_ptr<FakeCamera> camera;

private slots:
    void numbersTheFormats_data()
    {
        QTest::addColumn<quint32>("fourcc");
        QTest::addColumn<int>("number");
        QTest::newRow("MJPEG") << quint32(V4L2_PIX_FMT_MJPEG) << 19;
        QTest::newRow("YUYV") << quint32(V4L2_PIX_FMT_YUYV) << 5;
        QTest::newRow("UYVY") << quint32(V4L2_PIX_FMT_UYVY) << 5;
        QTest::newRow("NV12") << quint32(V4L2_PIX_FMT_NV12) << 7;
        QTest::newRow("grey") << quint32(V4L2_PIX_FMT_GREY) << 7;
        QTest::newRow("RGB24") << quint32(V4L2_PIX_FMT_RGB24) << 0;
        QTest::newRow("RGB565") << quint32(V4L2_PIX_FMT_RGB565) << 1;
        QTest::newRow("Y10") << quint32(V4L2_PIX_FMT_Y10) << 7;
        QTest::newRow("Y12") << quint32(V4L2_PIX_FMT_Y12) << 7;
        QTest::newRow("Y16") << quint32(V4L2_PIX_FMT_Y16) << 7;
        QTest::newRow("BGGR") << quint32(V4L2_PIX_FMT_SBGGR8) << 1;
        QTest::newRow("GBRG") << quint32(V4L2_PIX_FMT_SGBRG8) << 1;
        QTest::newRow("GRBG") << quint32(V4L2_PIX_FMT_SGRBG8) << 1;
        QTest::newRow("RGGB") << quint32(V4L2_PIX_FMT_SRGGB8) << 1;
        QTest::newRow("RGGB of 10 bits") << quint32(V4L2_PIX_FMT_SRGGB10) << 1;
        QTest::newRow("BGGR of 16 bits") << quint32(V4L2_PIX_FMT_SBGGR16) << 1;
        QTest::newRow("H.264") << quint32(V4L2_PIX_FMT_H264) << 20;
    }

    void numbersTheFormats()
    {
        QFETCH(quint32, fourcc);
        QFETCH(int, number);
        const auto formats = formatsOf({{fourcc, {{640, 480}}, {}}});
        QCOMPARE(formats.size(), std::size_t(1));
        QCOMPARE(formats[0].number, number);
        QCOMPARE(formats[0].code, fourcc);
    }

    void listsTheBestFirstAndEachNumberOnce()
    {
        const auto formats = formatsOf({{V4L2_PIX_FMT_H264, {{640, 480}}, {}},
                                        {V4L2_PIX_FMT_Z16, {{640, 480}}, {}},
                                        {V4L2_PIX_FMT_UYVY, {{640, 480}}, {}},
                                        {V4L2_PIX_FMT_YUYV, {{640, 480}}, {}},
                                        {V4L2_PIX_FMT_MJPEG, {{640, 480}}, {}}});
        QCOMPARE(formats.size(), std::size_t(3));
        QCOMPARE(formats[0].code, quint32(V4L2_PIX_FMT_MJPEG));
        QCOMPARE(formats[1].code, quint32(V4L2_PIX_FMT_YUYV));
        QCOMPARE(formats[2].code, quint32(V4L2_PIX_FMT_H264));
    }

    void prefersFewerBitsOfASample()
    {
        const auto formats = formatsOf({{V4L2_PIX_FMT_Y16, {{640, 480}}, {}},
                                        {V4L2_PIX_FMT_SRGGB12, {{640, 480}}, {}},
                                        {V4L2_PIX_FMT_SRGGB8, {{640, 480}}, {}},
                                        {V4L2_PIX_FMT_GREY, {{640, 480}}, {}}});
        QCOMPARE(formats.size(), std::size_t(2));
        QCOMPARE(formats[0].code, quint32(V4L2_PIX_FMT_GREY));
        QCOMPARE(formats[1].code, quint32(V4L2_PIX_FMT_SRGGB8));
    }

    void sortsSizesAndNamesEachOnce()
    {
        const auto formats =
            formatsOf({{V4L2_PIX_FMT_YUYV,
                        {{1920, 1080}, {640, 480}, {0, 480}, {640, 480}, {100000, 2}, {320, 240}},
                        {}}});
        QCOMPARE(formats[0].sizes, (Sizes{{320, 240}, {640, 480}, {1920, 1080}}));
    }

    void offersCommonSizesOfARange()
    {
        const v4l2_frmsize_stepwise range = {320, 1600, 16, 240, 1200, 8};
        const auto formats = formatsOf({{V4L2_PIX_FMT_YUYV, {}, range}});
        // 640 x 360, 800 x 600 and others lie on the grid; 1280 x 1024 and 1600 x 1200 too.
        QCOMPARE(formats[0].sizes.front(), QSize(320, 240));
        QCOMPARE(formats[0].sizes.back(), QSize(1600, 1200));
        QVERIFY(std::count(formats[0].sizes.begin(), formats[0].sizes.end(), QSize(640, 480)) == 1);
        QVERIFY(std::count(formats[0].sizes.begin(), formats[0].sizes.end(), QSize(1920, 1080)) ==
                0);
        const v4l2_frmsize_stepwise coarse = {100, 700, 300, 100, 700, 300};
        QCOMPARE(formatsOf({{V4L2_PIX_FMT_YUYV, {}, coarse}})[0].sizes,
                 (Sizes{{100, 100}, {700, 700}}));
    }

    void takesTheCurrentSizeOfADeviceWithoutAList()
    {
        const auto before = formatsOf({{V4L2_PIX_FMT_YUYV, {}, {}}});
        QVERIFY(before.empty());
        const V4l2Device device(bench.system, bench.node(0));
        v4l2_format format = {};
        camera->formats = {{V4L2_PIX_FMT_YUYV, {{720, 576}}, {}}};
        format.fmt.pix.pixelformat = V4L2_PIX_FMT_YUYV;
        QCOMPARE(device.request(VIDIOC_S_FMT, &format), 0);
        camera->formats = {{V4L2_PIX_FMT_YUYV, {}, {}}};
        QCOMPARE(videoFormats(device)[0].sizes, (Sizes{{720, 576}}));
    }

    void findsTheShortestFrameTime()
    {
        formatsOf({{V4L2_PIX_FMT_YUYV, {{640, 480}}, {}}});
        camera->framesPerSecond = 50;
        const V4l2Device device(bench.system, bench.node(0));
        QCOMPARE(zolens::shortestFrameTime(device, V4L2_PIX_FMT_YUYV, QSize(640, 480)), 0.02);
        bench.system->fail(VIDIOC_ENUM_FRAMEINTERVALS, EINVAL);
        QCOMPARE(zolens::shortestFrameTime(device, V4L2_PIX_FMT_YUYV, QSize(640, 480)), 0.0);
    }

    void aSystemCallGoesOnAfterASignal()
    {
        formatsOf({{V4L2_PIX_FMT_YUYV, {{640, 480}}, {}}});
        bench.system->fail(VIDIOC_ENUM_FMT, EINTR, 3);
        const V4l2Device device(bench.system, bench.node(0));
        QCOMPARE(videoFormats(device).size(), std::size_t(1));
    }
};

QTEST_GUILESS_MAIN(tst_VideoFormats)
#include "tst_VideoFormats.moc"
