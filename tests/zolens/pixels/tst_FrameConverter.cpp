#include "YuvColors.h"

#include "pixels/FrameConverter.h"

#include <QImage>
#include <QtTest>

using namespace zolens;

namespace {

AvPointer<AVFrame> makeFrame(AVPixelFormat format, int width, int height)
{
    AvPointer<AVFrame> frame(av_frame_alloc());
    frame->format = format;
    frame->width = width;
    frame->height = height;
    return av_frame_get_buffer(frame.get(), 0) == 0 ? std::move(frame) : nullptr;
}

void fillPlane(AVFrame* frame, int plane, int rows, int value)
{
    memset(frame->data[plane], value, size_t(frame->linesize[plane]) * rows);
}

void fill420(AVFrame* frame, const Yuv& sample)
{
    fillPlane(frame, 0, frame->height, sample.y);
    fillPlane(frame, 1, (frame->height + 1) / 2, sample.u);
    fillPlane(frame, 2, (frame->height + 1) / 2, sample.v);
}

/// Every pixel has a luma of its own.
AvPointer<AVFrame> makeRamp(AVPixelFormat format, int width, int height)
{
    AvPointer<AVFrame> frame = makeFrame(format, width, height);
    fill420(frame.get(), {0, 128, 128});
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            frame->data[0][y * frame->linesize[0] + x] = uint8_t(16 + y * width + x);
    }
    return frame;
}

QImage converted(const AVFrame& frame, FrameConverter::Orientation orientation = {})
{
    QImage image(frame.width, frame.height, QImage::Format_RGB32);
    image.fill(Qt::transparent);
    FrameConverter converter;
    return converter.convert(frame, orientation, &image) ? image : QImage();
}

} // namespace

class tst_FrameConverter : public QObject
{
    Q_OBJECT

private slots:
    void followsMatrixAndRange_data();
    void followsMatrixAndRange();
    void takesTheMatrixFromTheSizeWhenNoneIsStated();
    void takesTheMatrixOfPackedPictures();
    void takesJpegFormatsForFullRange();
    void convertsEveryLayout_data();
    void convertsEveryLayout();
    void convertsTenBits();
    void turnsThePicture_data();
    void turnsThePicture();
    void makesTransparentSourcesOpaque();
    void cropsToTheTarget_data();
    void cropsToTheTarget();
    void refusesALargerTarget();
};

void tst_FrameConverter::followsMatrixAndRange_data()
{
    QTest::addColumn<int>("space");
    QTest::addColumn<int>("range");
    QTest::addColumn<double>("red");
    QTest::addColumn<double>("blue");
    const auto add = [](const char* name, AVColorSpace space, const Weights& weights) {
        QTest::addRow("%s limited", name)
            << int(space) << int(AVCOL_RANGE_MPEG) << weights.red << weights.blue;
        QTest::addRow("%s full", name)
            << int(space) << int(AVCOL_RANGE_JPEG) << weights.red << weights.blue;
    };
    add("BT.601", AVCOL_SPC_SMPTE170M, bt601);
    add("BT.470", AVCOL_SPC_BT470BG, bt601);
    add("BT.709", AVCOL_SPC_BT709, bt709);
    add("BT.2020", AVCOL_SPC_BT2020_NCL, bt2020);
}

void tst_FrameConverter::followsMatrixAndRange()
{
    QFETCH(int, space);
    QFETCH(int, range);
    QFETCH(double, red);
    QFETCH(double, blue);
    const AvPointer<AVFrame> frame = makeFrame(AV_PIX_FMT_YUV420P, 16, 16);
    frame->colorspace = AVColorSpace(space);
    frame->color_range = AVColorRange(range);
    for (const Yuv& sample :
         {Yuv{16, 128, 128}, Yuv{235, 128, 128}, Yuv{255, 128, 128}, Yuv{0, 128, 128},
          Yuv{120, 90, 150}, Yuv{81, 90, 240}, Yuv{145, 54, 34}, Yuv{41, 240, 110}}) {
        fill420(frame.get(), sample);
        const QImage image = converted(*frame);
        const bool full = range == AVCOL_RANGE_JPEG;
        const QRgb expected = expectedColor(sample, {red, blue}, full);
        QVERIFY2(isNear(image.pixel(7, 9), expected, 3, blueTolerance(sample, {red, blue}, full)),
                 qPrintable(QStringLiteral("%1 instead of %2")
                                .arg(image.pixel(7, 9), 0, 16)
                                .arg(expected, 0, 16)));
    }
}

void tst_FrameConverter::takesTheMatrixFromTheSizeWhenNoneIsStated()
{
    const Yuv sample = {120, 90, 180};
    const AvPointer<AVFrame> small = makeFrame(AV_PIX_FMT_YUV420P, 640, 480);
    fill420(small.get(), sample);
    QVERIFY(isNear(converted(*small).pixel(0, 0), expectedColor(sample, bt601, false), 3));
    const AvPointer<AVFrame> large = makeFrame(AV_PIX_FMT_YUV420P, 1280, 720);
    fill420(large.get(), sample);
    QVERIFY(isNear(converted(*large).pixel(0, 0), expectedColor(sample, bt709, false), 3,
                   blueTolerance(sample, bt709, false)));
}

void tst_FrameConverter::takesTheMatrixOfPackedPictures()
{
    const Yuv sample = {120, 90, 180};
    const AvPointer<AVFrame> frame = makeFrame(AV_PIX_FMT_YUYV422, 37, 5);
    frame->colorspace = AVCOL_SPC_BT709;
    for (int i = 0; i < 5 * frame->linesize[0]; i += 4) {
        const uint8_t pair[] = {uint8_t(sample.y), uint8_t(sample.u), uint8_t(sample.y),
                                uint8_t(sample.v)};
        std::copy_n(pair, 4, frame->data[0] + i);
    }
    for (const QPoint& corner : {QPoint(0, 0), QPoint(36, 4)})
        QVERIFY(isNear(converted(*frame).pixel(corner), expectedColor(sample, bt709, false), 3,
                       blueTolerance(sample, bt709, false)));
}

void tst_FrameConverter::takesJpegFormatsForFullRange()
{
    const Yuv sample = {8, 100, 140};
    const AvPointer<AVFrame> frame = makeFrame(AV_PIX_FMT_YUVJ420P, 16, 16);
    frame->colorspace = AVCOL_SPC_BT470BG;
    fill420(frame.get(), sample);
    QVERIFY(isNear(converted(*frame).pixel(3, 3), expectedColor(sample, bt601, true), 3));
}

void tst_FrameConverter::convertsEveryLayout_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("4:2:0") << int(AV_PIX_FMT_YUV420P);
    QTest::newRow("4:2:2") << int(AV_PIX_FMT_YUV422P);
    QTest::newRow("4:4:4") << int(AV_PIX_FMT_YUV444P);
    QTest::newRow("4:1:1 without libyuv") << int(AV_PIX_FMT_YUV411P);
    QTest::newRow("4:4:0 without libyuv") << int(AV_PIX_FMT_YUV440P);
    QTest::newRow("NV12") << int(AV_PIX_FMT_NV12);
    QTest::newRow("NV21 without libyuv") << int(AV_PIX_FMT_NV21);
    QTest::newRow("YUYV") << int(AV_PIX_FMT_YUYV422);
    QTest::newRow("UYVY") << int(AV_PIX_FMT_UYVY422);
    QTest::newRow("YVYU without libyuv") << int(AV_PIX_FMT_YVYU422);
    QTest::newRow("RGB24") << int(AV_PIX_FMT_RGB24);
    QTest::newRow("BGR24") << int(AV_PIX_FMT_BGR24);
    QTest::newRow("RGBA") << int(AV_PIX_FMT_RGBA);
    QTest::newRow("BGRA") << int(AV_PIX_FMT_BGRA);
    QTest::newRow("RGB0") << int(AV_PIX_FMT_RGB0);
    QTest::newRow("BGR0") << int(AV_PIX_FMT_BGR0);
}

void tst_FrameConverter::convertsEveryLayout()
{
    QFETCH(int, format);
    const Yuv sample = {120, 90, 150};
    // An independent library makes the source picture from a plain 4:4:4 one.
    const AvPointer<AVFrame> plain = makeFrame(AV_PIX_FMT_YUV444P, 38, 21);
    fillPlane(plain.get(), 0, 21, sample.y);
    fillPlane(plain.get(), 1, 21, sample.u);
    fillPlane(plain.get(), 2, 21, sample.v);
    const AvPointer<AVFrame> frame = makeFrame(AVPixelFormat(format), 38, 21);
    const AvPointer<SwsContext> scaler(sws_getContext(38, 21, AV_PIX_FMT_YUV444P, 38, 21,
                                                      AVPixelFormat(format), SWS_BILINEAR, nullptr,
                                                      nullptr, nullptr));
    sws_scale(scaler.get(), plain->data, plain->linesize, 0, 21, frame->data, frame->linesize);

    const QRgb expected = expectedColor(sample, bt601, false);
    for (const bool turned : {false, true}) {
        const QImage image = converted(*frame, {turned, turned});
        for (const QPoint& corner : {QPoint(0, 0), QPoint(37, 0), QPoint(0, 20), QPoint(37, 20)})
            QVERIFY2(isNear(image.pixel(corner), expected, 4),
                     qPrintable(QString::number(image.pixel(corner), 16)));
    }
}

void tst_FrameConverter::convertsTenBits()
{
    const Yuv sample = {120, 90, 150};
    const AvPointer<AVFrame> frame = makeFrame(AV_PIX_FMT_YUV420P10LE, 32, 16);
    const int values[] = {sample.y, sample.u, sample.v};
    for (int plane = 0; plane < 3; ++plane) {
        auto* data = reinterpret_cast<uint16_t*>(frame->data[plane]);
        std::fill_n(data, frame->linesize[plane] / 2 * (plane ? 8 : 16), values[plane] * 4);
    }
    QVERIFY(isNear(converted(*frame).pixel(5, 5), expectedColor(sample, bt601, false), 3));
}

void tst_FrameConverter::turnsThePicture_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<bool>("flip");
    QTest::addColumn<bool>("mirror");
    for (const int format : {int(AV_PIX_FMT_YUV420P), int(AV_PIX_FMT_YUVA420P)}) {
        for (const int turn : {0, 1, 2, 3})
            QTest::addRow("%d, %d", format, turn) << format << bool(turn & 1) << bool(turn & 2);
    }
}

void tst_FrameConverter::turnsThePicture()
{
    QFETCH(int, format);
    QFETCH(bool, flip);
    QFETCH(bool, mirror);
    // Odd lengths and a height that no band divides; 15 x 13 samples fit in a byte.
    const AvPointer<AVFrame> frame = makeRamp(AVPixelFormat(format), 15, 13);
    if (frame->data[3])
        fillPlane(frame.get(), 3, 13, 255);
    const QImage plain = converted(*frame);
    QVERIFY(plain.pixel(0, 0) != plain.pixel(14, 0) && plain.pixel(0, 0) != plain.pixel(0, 12));
    QCOMPARE(converted(*frame, {flip, mirror}), plain.mirrored(mirror, flip));
}

void tst_FrameConverter::makesTransparentSourcesOpaque()
{
    for (const AVPixelFormat format : {AV_PIX_FMT_BGRA, AV_PIX_FMT_RGBA, AV_PIX_FMT_ARGB}) {
        const AvPointer<AVFrame> frame = makeFrame(format, 8, 8);
        fillPlane(frame.get(), 0, 8, 0x40);
        const QImage image = converted(*frame);
        QCOMPARE(reinterpret_cast<const QRgb*>(image.constBits())[0], 0xff404040U);
    }
}

void tst_FrameConverter::cropsToTheTarget_data()
{
    turnsThePicture_data();
}

void tst_FrameConverter::cropsToTheTarget()
{
    QFETCH(int, format);
    QFETCH(bool, flip);
    QFETCH(bool, mirror);
    const AvPointer<AVFrame> frame = makeRamp(AVPixelFormat(format), 15, 13);
    if (frame->data[3])
        fillPlane(frame.get(), 3, 13, 255);
    QImage image(11, 9, QImage::Format_RGB32);
    FrameConverter converter;
    QVERIFY(converter.convert(*frame, {flip, mirror}, &image));
    QCOMPARE(image, converted(*frame).copy(0, 0, 11, 9).mirrored(mirror, flip));
}

void tst_FrameConverter::refusesALargerTarget()
{
    const AvPointer<AVFrame> frame = makeFrame(AV_PIX_FMT_YUV420P, 16, 16);
    FrameConverter converter;
    for (const QSize& size : {QSize(16, 17), QSize(17, 16)}) {
        QImage image(size, QImage::Format_RGB32);
        QVERIFY(!converter.convert(*frame, {}, &image));
    }
}

QTEST_APPLESS_MAIN(tst_FrameConverter)
#include "tst_FrameConverter.moc"
