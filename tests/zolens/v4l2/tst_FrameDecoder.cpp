#include "TestPictures.h"
#include "v4l2/FrameDecoder.h"

#include <linux/videodev2.h>

#include <QtTest>

using zolens::DriverFrame;
using zolens::FrameDecoder;
using zolens::makeDecoder;
using zolens::PictureLayout;
using Result = FrameDecoder::Result;

namespace {

const QSize size(64, 48);

DriverFrame frameOf(const QByteArray& data)
{
    DriverFrame frame;
    frame.data = reinterpret_cast<const uchar*>(data.constData());
    frame.size = std::size_t(data.size());
    return frame;
}

PictureLayout layoutOf(quint32 fourcc, int bytesPerLine = 0)
{
    return {zolens::findPixelFormat(fourcc), size, bytesPerLine};
}

QImage target()
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    return image;
}

} // namespace

class tst_FrameDecoder final : public QObject
{
    Q_OBJECT

private slots:
    void decodesEveryWayRound_data()
    {
        QTest::addColumn<quint32>("fourcc");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<int>("bytesPerLine");
        const QImage picture = pictures::quarters(size);
        QTest::newRow("MJPEG") << quint32(V4L2_PIX_FMT_MJPEG) << pictures::jpeg(picture) << 0;
        QTest::newRow("YUYV") << quint32(V4L2_PIX_FMT_YUYV) << pictures::yuyv(picture) << 128;
        QTest::newRow("NV12") << quint32(V4L2_PIX_FMT_NV12) << pictures::nv12(picture, 64) << 64;
        QTest::newRow("NV12, padded")
            << quint32(V4L2_PIX_FMT_NV12) << pictures::nv12(picture, 96) << 96;
        QTest::newRow("RGB") << quint32(V4L2_PIX_FMT_RGB24) << pictures::rgb24(picture) << 192;
    }

    void decodesEveryWayRound()
    {
        QFETCH(quint32, fourcc);
        QFETCH(QByteArray, data);
        QFETCH(int, bytesPerLine);
        const auto decoder = makeDecoder(layoutOf(fourcc, bytesPerLine));
        QVERIFY(decoder);
        QVERIFY(!decoder->needsEveryFrame());
        for (const bool flip : {false, true}) {
            for (const bool mirror : {false, true}) {
                QImage image = target();
                QVERIFY(decoder->decode(frameOf(data), {flip, mirror}, &image) == Result::Picture);
                QVERIFY(pictures::areQuarters(image, flip, mirror));
            }
        }
    }

    void refusesRawFramesThatAreTooShort()
    {
        QByteArray data = pictures::yuyv(pictures::quarters(size));
        data.chop(1);
        QImage image = target();
        const auto decoder = makeDecoder(layoutOf(V4L2_PIX_FMT_YUYV));
        QVERIFY(decoder->decode(frameOf(data), {}, &image) == Result::Damaged);
    }

    void skipsDamagedJpegsAndGoesOn_data()
    {
        QTest::addColumn<QByteArray>("data");
        const QByteArray good = pictures::jpeg(pictures::quarters(size));
        QByteArray corrupt = good;
        for (int i = corrupt.size() / 2; i < corrupt.size() - 20; i += 3)
            corrupt[i] = char(i * 7);
        QTest::newRow("truncated") << good.left(good.size() * 2 / 3);
        QTest::newRow("header only") << good.left(100);
        QTest::newRow("corrupt") << corrupt;
        QTest::newRow("rubbish") << QByteArray(1000, 'x');
        QTest::newRow("one byte") << QByteArray("\xff");
        QTest::newRow("another size") << pictures::jpeg(pictures::quarters(QSize(80, 48)));
    }

    void skipsDamagedJpegsAndGoesOn()
    {
        QFETCH(QByteArray, data);
        const QByteArray good = pictures::jpeg(pictures::quarters(size));
        const auto decoder = makeDecoder(layoutOf(V4L2_PIX_FMT_MJPEG));
        QImage image = target();
        QVERIFY(decoder->decode(frameOf(good), {}, &image) == Result::Picture);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(decoder->decode(frameOf(data), {}, &image) == Result::Damaged);
            QVERIFY(decoder->decode(frameOf(good), {}, &image) == Result::Picture);
            QVERIFY(pictures::areQuarters(image));
        }
    }

    void h264NeedsEveryFrame()
    {
        const auto decoder = makeDecoder(layoutOf(V4L2_PIX_FMT_H264));
        QVERIFY(decoder);
        QVERIFY(decoder->needsEveryFrame());
        QImage image = target();
        QVERIFY(decoder->decode(frameOf(QByteArray(500, 'x')), {}, &image) != Result::Picture);
        QVERIFY(decoder->decode(frameOf(QByteArray(500, 'x')), {}, nullptr) != Result::Picture);
    }
};

QTEST_GUILESS_MAIN(tst_FrameDecoder)
#include "tst_FrameDecoder.moc"
