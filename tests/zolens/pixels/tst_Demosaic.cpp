#include "SensorPictures.h"

#include <QtTest>

using namespace zolens;
using namespace SensorPictures;

namespace {

constexpr std::uint32_t bayerRG8 = 0x01080009;

int reflected(int position, int length)
{
    if (length == 1)
        return 0;
    while (position < 0 || position >= length)
        position = position < 0 ? -position : 2 * (length - 1) - position;
    return position;
}

/// A mosaic of bytes whose first two rows begin with the colours of `pattern`, as in "RGGB".
struct Mosaic
{
    QByteArray pattern;
    QSize size;
    QVector<int> samples;

    char colorAt(int x, int y) const { return pattern[2 * (y & 1) + (x & 1)]; }
    int at(int x, int y) const
    {
        return samples[reflected(y, size.height()) * size.width() + reflected(x, size.width())];
    }

    double weighted(const double (&weights)[5][5], int x, int y) const
    {
        double sum = 0;
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx)
                sum += weights[dy + 2][dx + 2] * at(x + dx, y + dy);
        }
        return sum / 8;
    }

    /// By the filters of Malvar, He and Cutler, "High-quality linear interpolation for demosaicing
    /// of Bayer-patterned color images", figure 2.
    double color(char wanted, int x, int y) const
    {
        static constexpr double green[5][5] = {{0, 0, -1, 0, 0},
                                               {0, 0, 2, 0, 0},
                                               {-1, 2, 4, 2, -1},
                                               {0, 0, 2, 0, 0},
                                               {0, 0, -1, 0, 0}};
        static constexpr double inRow[5][5] = {{0, 0, .5, 0, 0},
                                               {0, -1, 0, -1, 0},
                                               {-1, 4, 5, 4, -1},
                                               {0, -1, 0, -1, 0},
                                               {0, 0, .5, 0, 0}};
        static constexpr double inColumn[5][5] = {{0, 0, -1, 0, 0},
                                                  {0, -1, 4, -1, 0},
                                                  {.5, 0, 5, 0, .5},
                                                  {0, -1, 4, -1, 0},
                                                  {0, 0, -1, 0, 0}};
        static constexpr double diagonal[5][5] = {{0, 0, -1.5, 0, 0},
                                                  {0, 2, 0, 2, 0},
                                                  {-1.5, 0, 6, 0, -1.5},
                                                  {0, 2, 0, 2, 0},
                                                  {0, 0, -1.5, 0, 0}};
        const char own = colorAt(x, y);
        if (own == wanted)
            return at(x, y);
        if (wanted == 'G')
            return weighted(green, x, y);
        if (own != 'G')
            return weighted(diagonal, x, y);
        return weighted(colorAt(x + 1, y) == wanted ? inRow : inColumn, x, y);
    }

    QImage picture() const
    {
        QImage image(size, QImage::Format_RGB32);
        const auto byte = [](double value) { return qBound(0, int(std::lround(value)), 255); };
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                image.setPixel(
                    x, y,
                    qRgb(byte(color('R', x, y)), byte(color('G', x, y)), byte(color('B', x, y))));
        }
        return image;
    }
};

} // namespace

class tst_Demosaic : public QObject
{
    Q_OBJECT

private slots:
    void interpolatesEveryPattern_data();
    void interpolatesEveryPattern();
    void unpacksBayer_data();
    void unpacksBayer();
    void reproducesASmoothScene();
    void keepsGreyEdgesNearlyFreeOfColor();
    void convertsMosaicsOfAnySize();
};

void tst_Demosaic::interpolatesEveryPattern_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QByteArray>("pattern");
    QTest::addColumn<Orientation>("orientation");
    const auto add = [](const char* pattern, quint32 code) {
        addOrientations(pattern, [&](QTestData& row, Orientation orientation) {
            row << code << QByteArray(pattern) << orientation;
        });
    };
    add("GRBG", 0x01080008);
    add("RGGB", 0x01080009);
    add("GBRG", 0x0108000a);
    add("BGGR", 0x0108000b);
}

void tst_Demosaic::interpolatesEveryPattern()
{
    QFETCH(quint32, code);
    QFETCH(QByteArray, pattern);
    QFETCH(Orientation, orientation);
    for (const QSize& size :
         {QSize(64, 10), QSize(35, 13), QSize(2, 2), QSize(3, 5), QSize(5, 2)}) {
        const Mosaic mosaic = {pattern, size, scatteredSamples(size.width() * size.height(), 8)};
        const QImage expected = mosaic.picture().mirrored(orientation.mirror, orientation.flip);
        const QImage image = converted(code, bytes(mosaic.samples), size, orientation);
        QCOMPARE(difference(image, expected, 1), QString());
    }
}

void tst_Demosaic::unpacksBayer_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QByteArray>("pattern");
    QTest::addColumn<int>("packing");
    QTest::addColumn<int>("bits");
    const auto add = [](quint32 first, quint32 step, std::initializer_list<const char*> patterns,
                        Packing packing, int bits) {
        quint32 code = first;
        for (const char* pattern : patterns) {
            QTest::addRow("%s 0x%08x", pattern, code)
                << code << QByteArray(pattern) << int(packing) << bits;
            code += step;
        }
    };
    for (const auto& [code, bits] :
         {std::pair(0x0110000cU, 10), {0x01100010U, 12}, {0x0110002eU, 16}})
        add(code, 1, {"GRBG", "RGGB", "GBRG", "BGGR"}, Words, bits);
    add(0x010c0026, 1, {"GRBG", "RGGB", "GBRG", "BGGR"}, Packed, 10);
    add(0x010c002a, 1, {"GRBG", "RGGB", "GBRG", "BGGR"}, Packed, 12);
    add(0x010a0052, 2, {"BGGR", "GBRG", "GRBG", "RGGB"}, Stream, 10);
    add(0x010c0053, 2, {"BGGR", "GBRG", "GRBG", "RGGB"}, Stream, 12);
}

void tst_Demosaic::unpacksBayer()
{
    QFETCH(quint32, code);
    QFETCH(QByteArray, pattern);
    QFETCH(int, packing);
    QFETCH(int, bits);
    constexpr QSize size(19, 7);
    const QVector<int> samples = scatteredSamples(size.width() * size.height(), bits);
    Mosaic mosaic = {pattern, size, samples};
    for (int& sample : mosaic.samples)
        sample >>= bits - 8;
    const QImage image = converted(code, pack(samples, Packing(packing), bits), size);
    QCOMPARE(difference(image, mosaic.picture(), 1), QString());
}

void tst_Demosaic::reproducesASmoothScene()
{
    constexpr QSize size(50, 40);
    QImage scene(size, QImage::Format_RGB32);
    QVector<int> samples;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            scene.setPixel(x, y, qRgb(20 + 3 * x + y, 200 - 2 * x - y, 60 + x + 3 * y));
            const QRgb color = scene.pixel(x, y);
            const bool evenRow = y % 2 == 0;
            const bool evenColumn = x % 2 == 0;
            samples << (evenRow != evenColumn ? qGreen(color)
                        : evenRow             ? qRed(color)
                                              : qBlue(color));
        }
    }
    const QImage image = converted(bayerRG8, bytes(samples), size);
    const QRect inner = QRect(QPoint(), size).adjusted(2, 2, -2, -2);
    QCOMPARE(difference(image.copy(inner), scene.copy(inner), 0), QString());
    // A scene that goes on beyond the edge is not known there: off by a step or two.
    QCOMPARE(difference(image, scene, 6), QString());
}

void tst_Demosaic::keepsGreyEdgesNearlyFreeOfColor()
{
    constexpr QSize size(16, 8);
    constexpr int edge = 7;
    QVector<int> samples;
    for (int i = 0; i < size.width() * size.height(); ++i)
        samples << (i % size.width() < edge ? 50 : 200);
    const QImage image = converted(bayerRG8, bytes(samples), size);
    for (int x = 0; x < size.width(); ++x) {
        const QColor color(image.pixel(x, 4));
        const int spread = qMax(color.red(), qMax(color.green(), color.blue())) -
                           qMin(color.red(), qMin(color.green(), color.blue()));
        // Means of neighbours alone would be off by half the step, which is 75.
        QVERIFY2(spread <= (qAbs(x - edge) <= 2 ? 57 : 0), qPrintable(color.name()));
    }
}

void tst_Demosaic::convertsMosaicsOfAnySize()
{
    for (int width = 1; width <= 6; ++width) {
        for (int height = 1; height <= 6; ++height) {
            const QSize size(width, height);
            const QVector<int> flat(width * height, 77);
            for (const quint32 code : {0x01080008U, 0x01080009U, 0x0108000aU, 0x0108000bU}) {
                for (const Orientation& orientation : orientations) {
                    QImage expected(size, QImage::Format_RGB32);
                    expected.fill(qRgb(77, 77, 77));
                    QCOMPARE(converted(code, bytes(flat), size, orientation), expected);
                }
            }
        }
    }
}

QTEST_APPLESS_MAIN(tst_Demosaic)
#include "tst_Demosaic.moc"
