#include "RowPictures.h"

#include "pixels/SensorRows.h"

#include <QtTest>

using namespace zolens;
using namespace RowPictures;

namespace {

using Layout = SensorFormat::Layout;
using Colors = SensorFormat::Colors;

struct Meaning
{
    Colors colors;
    Weights weights;
    bool fullRange;
};

constexpr Meaning meanings[] = {{Colors::Full601, bt601, true},
                                {Colors::Limited601, bt601, false},
                                {Colors::Limited709, bt709, false}};

} // namespace

/// Several rows at a time, with bytes between them, of any width.
class tst_SensorRows final : public QObject
{
    Q_OBJECT

private slots:
    void convertsEveryPixelAndTouchesNothingElse_data()
    {
        QTest::addColumn<int>("layout");
        QTest::addColumn<QByteArray>("order");
        const auto row = [](const char* order, Layout layout) {
            QTest::newRow(order) << int(layout) << QByteArray(order);
        };
        row("Y", Layout::Mono);
        row("RGB", Layout::Rgb);
        row("BGR", Layout::Bgr);
        row("RGBA", Layout::Rgba);
        row("BGRA", Layout::Bgra);
        row("YUYV", Layout::Yuyv);
        row("UYVY", Layout::Uyvy);
        row("UYYVYY", Layout::Uyyvyy);
        row("UYV", Layout::Uyv);
        row("YUV", Layout::Yuv);
    }

    void convertsEveryPixelAndTouchesNothingElse()
    {
        QFETCH(int, layout);
        QFETCH(QByteArray, order);
        const auto convert = rowFunction(Layout(layout));
        for (const QSize& size : sizes) {
            for (const int padding : paddings) {
                Source source;
                addPlane(&source, interleaved(order, size, padding), size.height(), padding);
                for (const Meaning& meaning : meanings) {
                    for (const bool upwards : {false, true}) {
                        const Target target(size, upwards);
                        convert(source.rows(), target.rows(), matrixFor(meaning.colors),
                                size.width(), size.height());
                        QCOMPARE(target.mistake({order,
                                                 {groupPixels(order), 1},
                                                 meaning.weights,
                                                 meaning.fullRange}),
                                 QString());
                    }
                }
            }
        }
    }
};

QTEST_APPLESS_MAIN(tst_SensorRows)
#include "tst_SensorRows.moc"
