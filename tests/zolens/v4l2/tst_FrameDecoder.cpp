#include "TestPictures.h"
#include "v4l2/FrameDecoder.h"

#include <linux/videodev2.h>

#include <QtTest>

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/opt.h>
}

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

/// Frames as a camera with a coder of its own sends them, the first of them a key frame.
std::vector<QByteArray> h264Frames(const QImage& picture, int count)
{
    const AVCodec* coder = avcodec_find_encoder(AV_CODEC_ID_H264);
    const zolens::AvPointer<AVCodecContext> context(avcodec_alloc_context3(coder));
    context->width = picture.width();
    context->height = picture.height();
    context->pix_fmt = AV_PIX_FMT_NV12;
    context->time_base = {1, 30};
    av_opt_set(context->priv_data, "tune", "zerolatency", 0);
    avcodec_open2(context.get(), coder, nullptr);
    const zolens::AvPointer<AVFrame> frame(av_frame_alloc());
    frame->format = context->pix_fmt;
    frame->width = picture.width();
    frame->height = picture.height();
    QByteArray pixels = pictures::nv12(picture, picture.width());
    av_image_fill_arrays(frame->data, frame->linesize, reinterpret_cast<uint8_t*>(pixels.data()),
                         context->pix_fmt, frame->width, frame->height, 1);
    const zolens::AvPointer<AVPacket> packet(av_packet_alloc());
    std::vector<QByteArray> frames;
    for (int i = 0; i < count; ++i) {
        frame->pts = i;
        avcodec_send_frame(context.get(), frame.get());
        while (avcodec_receive_packet(context.get(), packet.get()) >= 0) {
            frames.emplace_back(reinterpret_cast<const char*>(packet->data), packet->size);
            av_packet_unref(packet.get());
        }
    }
    return frames;
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

    void decodesH264WithoutDelay()
    {
        const auto frames = h264Frames(pictures::quarters(size), 5);
        QCOMPARE(frames.size(), std::size_t(5));
        const auto decoder = makeDecoder(layoutOf(V4L2_PIX_FMT_H264));
        // A frame that nobody wants is still needed for the next one.
        QVERIFY(decoder->decode(frameOf(frames[0]), {}, nullptr) == Result::Nothing);
        for (std::size_t i = 1; i < frames.size(); ++i) {
            QImage image = target();
            QVERIFY(decoder->decode(frameOf(frames[i]), {true, true}, &image) == Result::Picture);
            QVERIFY(pictures::areQuarters(image, true, true));
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
