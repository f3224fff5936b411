#include "RowPictures.h"

#include <libyuv.h>

#include <QtTest>

using namespace zolens;
using namespace RowPictures;

namespace {

/// How a format keeps its samples, by the descriptions of FFmpeg's formats.
struct Kind
{
    enum class Planes { One, Two, Three };

    Planes planes = Planes::One;
    QByteArray order; ///< Of the samples in a group, or of the planes.
    QSize chroma = {1, 1};
    int bits = 8;
};

QByteArray planeOf(char name, QSize size, int bits, int padding)
{
    QByteArray data;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            // More bits make the same colour finer by less than a step of eight bits.
            const int fine = bits == 8 ? 0 : sampleAt('f', x, y, bits - 9);
            const int sample = (codedAt(name, x, y) << (bits - 8)) + fine;
            data.append(char(sample & 0xff));
            if (bits > 8)
                data.append(char(sample >> 8));
        }
        data.append(GuardedBytes::blank(padding));
    }
    return data;
}

QSize chromaSize(const Kind& kind, QSize size)
{
    return {(size.width() + kind.chroma.width() - 1) / kind.chroma.width(),
            (size.height() + kind.chroma.height() - 1) / kind.chroma.height()};
}

void fill(Source* source, const Kind& kind, QSize size, int padding)
{
    if (kind.planes == Kind::Planes::One) {
        addPlane(source, interleaved(kind.order, size, padding), size.height(), padding);
        return;
    }
    addPlane(source, planeOf('Y', size, kind.bits, padding), size.height(), padding);
    const QSize half = chromaSize(kind, size);
    if (kind.planes == Kind::Planes::Two) {
        addPlane(source, interleaved("UV", half, padding), half.height(), padding);
        return;
    }
    for (const char name : {'U', 'V'})
        addPlane(source, planeOf(name, half, kind.bits, padding), half.height(), padding);
}

struct Matrix
{
    const libyuv::YuvConstants* constants;
    Weights weights;
    bool fullRange;
};

const Matrix matrices[] = {{&libyuv::kYuvI601Constants, bt601, false},
                           {&libyuv::kYuvJPEGConstants, bt601, true},
                           {&libyuv::kYuvH709Constants, bt709, false},
                           {&libyuv::kYuvF709Constants, bt709, true}};

} // namespace

Q_DECLARE_METATYPE(Kind)

class tst_RowConversions final : public QObject
{
    Q_OBJECT

private slots:
    void convertsEveryPixelAndTouchesNothingElse_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<int>("rowsPerChromaRow");
        QTest::addColumn<Kind>("kind");
        const auto row = [](const char* name, AVPixelFormat format, const Kind& kind) {
            QTest::newRow(name) << int(format) << kind.chroma.height() << kind;
        };
        using Planes = Kind::Planes;
        row("4:2:0", AV_PIX_FMT_YUV420P, {Planes::Three, "YUV", {2, 2}});
        row("4:2:0 of JPEG", AV_PIX_FMT_YUVJ420P, {Planes::Three, "YUV", {2, 2}});
        row("4:2:2", AV_PIX_FMT_YUV422P, {Planes::Three, "YUV", {2, 1}});
        row("4:2:2 of JPEG", AV_PIX_FMT_YUVJ422P, {Planes::Three, "YUV", {2, 1}});
        row("4:4:4", AV_PIX_FMT_YUV444P, {Planes::Three, "YUV", {1, 1}});
        row("4:4:4 of JPEG", AV_PIX_FMT_YUVJ444P, {Planes::Three, "YUV", {1, 1}});
        row("4:2:0, ten bits", AV_PIX_FMT_YUV420P10LE, {Planes::Three, "YUV", {2, 2}, 10});
        row("4:2:2, ten bits", AV_PIX_FMT_YUV422P10LE, {Planes::Three, "YUV", {2, 1}, 10});
        row("NV12", AV_PIX_FMT_NV12, {Planes::Two, "YUV", {2, 2}});
        row("grey", AV_PIX_FMT_GRAY8, {Planes::One, "Y", {1, 1}});
        row("YUYV", AV_PIX_FMT_YUYV422, {Planes::One, "YUYV", {2, 1}});
        row("UYVY", AV_PIX_FMT_UYVY422, {Planes::One, "UYVY", {2, 1}});
        row("RGB24", AV_PIX_FMT_RGB24, {Planes::One, "RGB"});
        row("BGR24", AV_PIX_FMT_BGR24, {Planes::One, "BGR"});
        row("RGBA", AV_PIX_FMT_RGBA, {Planes::One, "RGBA"});
        row("BGRA", AV_PIX_FMT_BGRA, {Planes::One, "BGRA"});
        row("RGB0", AV_PIX_FMT_RGB0, {Planes::One, "RGB0"});
        row("BGR0", AV_PIX_FMT_BGR0, {Planes::One, "BGR0"});
    }

    void convertsEveryPixelAndTouchesNothingElse()
    {
        QFETCH(int, format);
        QFETCH(int, rowsPerChromaRow);
        QFETCH(Kind, kind);
        const RowConversion* conversion = findRowConversion(AVPixelFormat(format));
        QVERIFY(conversion);
        QCOMPARE(int(conversion->format), format);
        QCOMPARE(1 << conversion->chromaShift, rowsPerChromaRow);
        for (const QSize& size : sizes) {
            for (const int padding : paddings) {
                Source source;
                fill(&source, kind, size, padding);
                for (const Matrix& matrix : matrices) {
                    for (const bool upwards : {false, true}) {
                        const Target target(size, upwards);
                        conversion->function(source.rows(), target.rows(), matrix.constants,
                                             size.width(), size.height());
                        QCOMPARE(target.mistake(
                                     {kind.order, kind.chroma, matrix.weights, matrix.fullRange}),
                                 QString());
                    }
                }
            }
        }
    }

    void knowsNoOthers()
    {
        for (const AVPixelFormat format :
             {AV_PIX_FMT_NONE, AV_PIX_FMT_NV21, AV_PIX_FMT_YVYU422, AV_PIX_FMT_YUV411P,
              AV_PIX_FMT_YUV440P, AV_PIX_FMT_YUVA420P, AV_PIX_FMT_ARGB, AV_PIX_FMT_GRAY16LE,
              AV_PIX_FMT_YUV420P10BE, AV_PIX_FMT_NB})
            QVERIFY(!findRowConversion(format));
    }

    void rowsOfAnImageBeginAtEitherEnd()
    {
        // Rows of three pixels and bytes beside, as of a part of a larger image.
        constexpr int stride = 20;
        QByteArray memory(stride * 4, 0);
        auto* const bytes = reinterpret_cast<uchar*>(memory.data());
        QImage image(bytes, 3, 4, stride, QImage::Format_RGB32);
        const TargetRows down = rowsOf(&image, false);
        QVERIFY(down.pixels == bytes);
        QCOMPARE(down.stride, stride);
        const TargetRows up = rowsOf(&image, true);
        QVERIFY(up.pixels == bytes + 60);
        QCOMPARE(up.stride, -stride);
    }

    void makesOnlyThePixelsOpaque()
    {
        for (const bool upwards : {false, true}) {
            QImage image(5, 3, QImage::Format_ARGB32);
            image.fill(0x12345678);
            makeOpaque(rowsOf(&image, upwards), 4, 3);
            for (int y = 0; y < 3; ++y) {
                const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
                for (int x = 0; x < 4; ++x)
                    QCOMPARE(line[x], 0xff345678U);
                QCOMPARE(line[4], 0x12345678U);
            }
        }
    }
};

QTEST_APPLESS_MAIN(tst_RowConversions)
#include "tst_RowConversions.moc"
