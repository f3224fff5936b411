#include "support/fakev4l2/TestPictures.h"
#include "v4l2/FrameDecoder.h"

#include <linux/videodev2.h>

#include <QPainter>
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

void appendSample(QByteArray* data, int value, int bits)
{
    const int sample = value << (bits - 8);
    data->append(char(sample & 0xff));
    if (bits > 8)
        data->append(char(sample >> 8));
}

/// What a sensor behind coloured filters sees, which repeat every two rows and columns. Every row
/// is filled up to its length.
QByteArray mosaic(const QImage& picture, const char* filters, int bits, int bytesPerLine)
{
    QByteArray data;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const char filter = filters[y % 2 * 2 + x % 2];
            const QColor color = picture.pixelColor(x, y);
            const int value = filter == 'R'   ? color.red()
                              : filter == 'G' ? color.green()
                                              : color.blue();
            appendSample(&data, value, bits);
        }
        data.append(bytesPerLine * (y + 1) - data.size(), '\x55');
    }
    return data;
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

/// The picture of the usual size, with something else to its right and below it.
QImage enlarged(const QSize& largerSize)
{
    QImage image(largerSize, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter(&image).drawImage(0, 0, pictures::quarters(size));
    return image;
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
        const auto addMosaic = [&](const char* filters, quint32 fourcc, int bits, int bytes) {
            QTest::addRow("%s, %d bits, %d bytes", filters, bits, bytes)
                << fourcc << mosaic(picture, filters, bits, bytes) << bytes;
        };
        addMosaic("BGGR", V4L2_PIX_FMT_SBGGR8, 8, 64);
        addMosaic("GBRG", V4L2_PIX_FMT_SGBRG8, 8, 64);
        addMosaic("GRBG", V4L2_PIX_FMT_SGRBG8, 8, 64);
        addMosaic("RGGB", V4L2_PIX_FMT_SRGGB8, 8, 64);
        addMosaic("RGGB", V4L2_PIX_FMT_SRGGB8, 8, 96);
        addMosaic("BGGR", V4L2_PIX_FMT_SBGGR10, 10, 128);
        addMosaic("GBRG", V4L2_PIX_FMT_SGBRG12, 12, 128);
        addMosaic("GRBG", V4L2_PIX_FMT_SGRBG16, 16, 128);
        addMosaic("RGGB", V4L2_PIX_FMT_SRGGB16, 16, 160);
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

    void showsGreyOfAnyDepth_data()
    {
        QTest::addColumn<quint32>("fourcc");
        QTest::addColumn<int>("bits");
        QTest::newRow("8 bits") << quint32(V4L2_PIX_FMT_GREY) << 8;
        QTest::newRow("10 bits") << quint32(V4L2_PIX_FMT_Y10) << 10;
        QTest::newRow("12 bits") << quint32(V4L2_PIX_FMT_Y12) << 12;
        QTest::newRow("14 bits") << quint32(V4L2_PIX_FMT_Y14) << 14;
        QTest::newRow("16 bits") << quint32(V4L2_PIX_FMT_Y16) << 16;
    }

    void showsGreyOfAnyDepth()
    {
        QFETCH(quint32, fourcc);
        QFETCH(int, bits);
        QByteArray data;
        for (int i = 0; i < size.width() * size.height(); ++i)
            appendSample(&data, i % size.width() * 3, bits);
        const auto decoder = makeDecoder(layoutOf(fourcc));
        QImage image = target();
        QVERIFY(decoder->decode(frameOf(data), {}, &image) == Result::Picture);
        for (const int x : {0, 1, 20, 63})
            QCOMPARE(QColor(image.pixel(x, 7)), QColor(x * 3, x * 3, x * 3));
    }

    void refusesRawFramesThatAreTooShort_data()
    {
        QTest::addColumn<quint32>("fourcc");
        QTest::addColumn<int>("bytes");
        const int pixels = size.width() * size.height();
        QTest::newRow("YUYV") << quint32(V4L2_PIX_FMT_YUYV) << 2 * pixels;
        QTest::newRow("RGGB") << quint32(V4L2_PIX_FMT_SRGGB8) << pixels;
        QTest::newRow("Y16") << quint32(V4L2_PIX_FMT_Y16) << 2 * pixels;
    }

    void refusesRawFramesThatAreTooShort()
    {
        QFETCH(quint32, fourcc);
        QFETCH(int, bytes);
        QImage image = target();
        const auto decoder = makeDecoder(layoutOf(fourcc));
        const QByteArray data(bytes, 'x');
        QVERIFY(decoder->decode(frameOf(data), {}, &image) == Result::Picture);
        QVERIFY(decoder->decode(frameOf(data.chopped(1)), {}, &image) == Result::Damaged);
    }

    void skipsDamagedJpegsAndGoesOn_data()
    {
        QTest::addColumn<QByteArray>("data");
        const QByteArray good = pictures::jpeg(pictures::quarters(size));
        QByteArray corrupt = good;
        for (int i = corrupt.size() / 2; i < corrupt.size() - 20; i += 3)
            corrupt[i] = char(i * 7);
        const QByteArray end = good.right(2);
        const QByteArray half = good.left(good.size() / 2);
        QTest::newRow("truncated") << good.left(good.size() * 2 / 3);
        QTest::newRow("truncated, with an end") << half + end;
        QTest::newRow("truncated, filled up") << half + QByteArray(300, '\0') + end;
        QTest::newRow("the last data missing") << good.left(good.size() - 4);
        QTest::newRow("more data than pixels")
            << good.chopped(2) + good.mid(good.size() / 2, 100) + end;
        QTest::newRow("header only") << good.left(100);
        QTest::newRow("corrupt") << corrupt;
        QTest::newRow("rubbish") << QByteArray(1000, 'x');
        QTest::newRow("one byte") << QByteArray("\xff");
        QTest::newRow("too narrow") << pictures::jpeg(pictures::quarters(QSize(48, 80)));
        QTest::newRow("too low") << pictures::jpeg(pictures::quarters(QSize(80, 32)));
        QTest::newRow("far too large") << pictures::jpeg(pictures::quarters(QSize(640, 480)));
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

    void showsJpegsThatOnlyEndOddly_data()
    {
        QTest::addColumn<QByteArray>("data");
        const QByteArray good = pictures::jpeg(pictures::quarters(size));
        const QByteArray end = good.right(2);
        const QByteArray endless = good.chopped(2);
        const QByteArray padding(300, '\0');
        QTest::newRow("no end") << endless;
        QTest::newRow("half an end") << good.chopped(1);
        QTest::newRow("padding before the end") << endless + padding + end;
        QTest::newRow("padding on both sides") << endless + QByteArray(40, 'x') + end + padding;
        QTest::newRow("padding in place of an end") << endless + padding;
    }

    void showsJpegsThatOnlyEndOddly()
    {
        QFETCH(QByteArray, data);
        const QByteArray good = pictures::jpeg(pictures::quarters(size));
        const auto decoder = makeDecoder(layoutOf(V4L2_PIX_FMT_MJPEG));
        QImage clean = target();
        QVERIFY(decoder->decode(frameOf(good), {true, true}, &clean) == Result::Picture);
        for (int i = 0; i < 3; ++i) {
            QImage image = target();
            QVERIFY(decoder->decode(frameOf(data), {true, true}, &image) == Result::Picture);
            QCOMPARE(image, clean);
        }
    }

    void cropsLargerPictures_data()
    {
        QTest::addColumn<quint32>("fourcc");
        QTest::addColumn<QByteArray>("data");
        const QImage high = enlarged(QSize(64, 56));
        const QImage larger = enlarged(QSize(82, 60));
        QByteArray padded = pictures::jpeg(larger);
        padded.insert(padded.size() - 2, QByteArray(300, '\0'));
        QTest::newRow("MJPEG, higher") << quint32(V4L2_PIX_FMT_MJPEG) << pictures::jpeg(high);
        QTest::newRow("MJPEG, larger") << quint32(V4L2_PIX_FMT_MJPEG) << pictures::jpeg(larger);
        QTest::newRow("MJPEG, larger with padding") << quint32(V4L2_PIX_FMT_MJPEG) << padded;
        QTest::newRow("H.264, higher") << quint32(V4L2_PIX_FMT_H264) << h264Frames(high, 1)[0];
        QTest::newRow("H.264, larger") << quint32(V4L2_PIX_FMT_H264) << h264Frames(larger, 1)[0];
    }

    void cropsLargerPictures()
    {
        QFETCH(quint32, fourcc);
        QFETCH(QByteArray, data);
        for (const bool flip : {false, true}) {
            for (const bool mirror : {false, true}) {
                const auto decoder = makeDecoder(layoutOf(fourcc));
                QImage image = target();
                QVERIFY(decoder->decode(frameOf(data), {flip, mirror}, &image) == Result::Picture);
                QVERIFY(pictures::areQuarters(image, flip, mirror));
            }
        }
    }

    void smallerH264PicturesCountAsDamaged()
    {
        const auto frames = h264Frames(pictures::quarters(QSize(64, 32)), 1);
        const auto decoder = makeDecoder(layoutOf(V4L2_PIX_FMT_H264));
        QImage image = target();
        QVERIFY(decoder->decode(frameOf(frames[0]), {}, &image) == Result::Damaged);
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
