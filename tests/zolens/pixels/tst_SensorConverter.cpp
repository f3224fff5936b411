#include "SensorPictures.h"

#include <QtTest>

using namespace zolens;
using namespace SensorPictures;

namespace {

constexpr std::uint32_t mono8 = 0x01080001;
constexpr std::uint32_t bayerRG8 = 0x01080009;
constexpr std::uint32_t rgb8 = 0x02180014;

/// Odd, so that without padding rows of packed samples share bytes.
constexpr QSize paddedSize(37, 5);

} // namespace

class tst_SensorConverter : public QObject
{
    Q_OBJECT

private slots:
    void showsTheUpperBitsOfGrey_data();
    void showsTheUpperBitsOfGrey();
    void clipsSamplesBeyondTheirDepth();
    void convertsRgb_data();
    void convertsRgb();
    void convertsYuv_data();
    void convertsYuv();
    void keepsToThePixelsOfTheTarget_data();
    void keepsToThePixelsOfTheTarget();
    void refusesTooFewBytes_data();
    void refusesTooFewBytes();
    void skipsThePaddingOfRows_data();
    void skipsThePaddingOfRows();
    void refusesPaddingThatDoesNotFit_data();
    void refusesPaddingThatDoesNotFit();
    void refusesTargetsThatCannotHoldThePicture();
    void convertsPicturesOfChangingKinds();
};

void tst_SensorConverter::showsTheUpperBitsOfGrey_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<int>("packing");
    QTest::addColumn<int>("bits");
    QTest::addColumn<Orientation>("orientation");
    const auto add = [](const char* name, quint32 code, Packing packing, int bits) {
        addOrientations(name, [&](QTestData& row, Orientation orientation) {
            row << code << int(packing) << bits << orientation;
        });
    };
    add("Mono8", mono8, Bytes, 8);
    add("Mono10", 0x01100003, Words, 10);
    add("Mono12", 0x01100005, Words, 12);
    add("Mono14", 0x01100025, Words, 14);
    add("Mono16", 0x01100007, Words, 16);
    add("Mono10p", 0x010a0046, Stream, 10);
    add("Mono12p", 0x010c0047, Stream, 12);
    add("Mono10Packed", 0x010c0004, Packed, 10);
    add("Mono12Packed", 0x010c0006, Packed, 12);
}

void tst_SensorConverter::showsTheUpperBitsOfGrey()
{
    QFETCH(quint32, code);
    QFETCH(int, packing);
    QFETCH(int, bits);
    QFETCH(Orientation, orientation);
    // Rows of 37 begin at each place within a group, and have room for the quick ways.
    constexpr QSize size(37, 9);
    const QVector<int> samples = scatteredSamples(size.width() * size.height(), bits);
    QImage expected(size, QImage::Format_RGB32);
    for (int i = 0; i < samples.size(); ++i) {
        const int grey = samples[i] >> (bits - 8);
        expected.setPixel(i % size.width(), i / size.width(), qRgb(grey, grey, grey));
    }
    const QImage image = converted(code, pack(samples, Packing(packing), bits), size, orientation);
    QCOMPARE(difference(image, expected.mirrored(orientation.mirror, orientation.flip), 1),
             QString());
}

void tst_SensorConverter::clipsSamplesBeyondTheirDepth()
{
    constexpr std::uint32_t mono10 = 0x01100003;
    const QImage image = converted(mono10, words({0, 512, 1023, 1024, 4095, 65535}), {6, 1});
    QVERIFY(isNear(image.pixel(1, 0), qRgb(128, 128, 128), 1));
    for (int x = 2; x < 6; ++x)
        QCOMPARE(image.pixel(x, 0), qRgb(255, 255, 255));
}

void tst_SensorConverter::convertsRgb_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QByteArray>("order");
    QTest::addColumn<int>("packing");
    QTest::addColumn<int>("bits");
    QTest::addColumn<Orientation>("orientation");
    const auto add = [](const char* name, quint32 code, const char* order, Packing packing,
                        int bits) {
        addOrientations(name, [&](QTestData& row, Orientation orientation) {
            row << code << QByteArray(order) << int(packing) << bits << orientation;
        });
    };
    add("RGB8", rgb8, "RGB", Bytes, 8);
    add("BGR8", 0x02180015, "BGR", Bytes, 8);
    add("RGBa8", 0x02200016, "RGBA", Bytes, 8);
    add("BGRa8", 0x02200017, "BGRA", Bytes, 8);
    add("RGB10", 0x02300018, "RGB", Words, 10);
    add("BGR10", 0x02300019, "BGR", Words, 10);
    add("RGB12", 0x0230001a, "RGB", Words, 12);
    add("BGR12", 0x0230001b, "BGR", Words, 12);
    add("RGB16", 0x02300033, "RGB", Words, 16);
    add("BGR16", 0x0230004b, "BGR", Words, 16);
    add("RGB10p", 0x021e005c, "RGB", Stream, 10);
    add("BGR10p", 0x021e0048, "BGR", Stream, 10);
    add("RGB12p", 0x0224005d, "RGB", Stream, 12);
    add("BGR12p", 0x02240049, "BGR", Stream, 12);
}

void tst_SensorConverter::convertsRgb()
{
    QFETCH(quint32, code);
    QFETCH(QByteArray, order);
    QFETCH(int, packing);
    QFETCH(int, bits);
    QFETCH(Orientation, orientation);
    constexpr QSize size(21, 5);
    QImage expected(size, QImage::Format_RGB32);
    const int perPixel = order.size();
    const QVector<int> samples = scatteredSamples(size.width() * size.height() * perPixel, bits);
    for (int i = 0; i < size.width() * size.height(); ++i) {
        const auto channel = [&](char name) {
            return samples[i * perPixel + order.indexOf(name)] >> (bits - 8);
        };
        expected.setPixel(i % size.width(), i / size.width(),
                          qRgb(channel('R'), channel('G'), channel('B')));
    }
    const QImage image = converted(code, pack(samples, Packing(packing), bits), size, orientation);
    QCOMPARE(image, expected.mirrored(orientation.mirror, orientation.flip));
}

void tst_SensorConverter::convertsYuv_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QByteArray>("order");
    QTest::addColumn<bool>("full");
    QTest::addColumn<bool>("highDefinition");
    QTest::addColumn<Orientation>("orientation");
    const auto add = [](quint32 code, const char* order, bool full = true,
                        bool highDefinition = false) {
        const QByteArray name = QByteArray(order) + " 0x" + QByteArray::number(code, 16);
        addOrientations(name.constData(), [&](QTestData& row, Orientation orientation) {
            row << code << QByteArray(order) << full << highDefinition << orientation;
        });
    };
    add(0x020c001e, "UYYVYY");
    add(0x0210001f, "UYVY");
    add(0x02180020, "UYV");
    add(0x02100032, "YUYV");
    add(0x0218003a, "UYV");
    add(0x0210003b, "YUYV");
    add(0x020c003c, "UYYVYY");
    add(0x0218003d, "UYV", false);
    add(0x0210003e, "YUYV", false);
    add(0x020c003f, "UYYVYY", false);
    add(0x02180040, "UYV", false, true);
    add(0x02100041, "YUYV", false, true);
    add(0x020c0042, "UYYVYY", false, true);
    add(0x02100043, "UYVY");
    add(0x02100044, "UYVY", false);
    add(0x02100045, "UYVY", false, true);
    add(0x0218005b, "YUV");
}

void tst_SensorConverter::convertsYuv()
{
    QFETCH(quint32, code);
    QFETCH(QByteArray, order);
    QFETCH(bool, full);
    QFETCH(bool, highDefinition);
    QFETCH(Orientation, orientation);
    constexpr QSize size(27, 4);
    const int groupPixels = order.count('Y');
    const int groups = (size.width() + groupPixels - 1) / groupPixels;
    const Weights weights = highDefinition ? bt709 : bt601;
    QByteArray data;
    QImage expected(groups * groupPixels, size.height(), QImage::Format_RGB32);
    int blueLimit = 3;
    for (int group = 0; group < groups * size.height(); ++group) {
        Yuv sample = {0, 100 + scattered(group, 5), 110 + scattered(group + 500, 5)};
        blueLimit = qMax(blueLimit, blueTolerance(sample, weights, full));
        int pixel = group % groups * groupPixels;
        for (const char name : order) {
            if (name == 'Y') {
                sample.y = 60 + scattered(data.size(), 7);
                expected.setPixel(pixel++, group / groups, expectedColor(sample, weights, full));
            }
            data.append(char(name == 'Y' ? sample.y : name == 'U' ? sample.u : sample.v));
        }
    }
    const QImage scene = expected.copy(QRect(QPoint(), size));
    const QImage image = converted(code, data, size, orientation);
    QCOMPARE(difference(image, scene.mirrored(orientation.mirror, orientation.flip), blueLimit),
             QString());
}

void tst_SensorConverter::keepsToThePixelsOfTheTarget_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<Orientation>("orientation");
    for (const quint32 code : {mono8, bayerRG8, rgb8, 0x010a0046U, 0x010c0006U, 0x0110000dU,
                               0x02100032U, 0x020c001eU, 0x02180020U, 0x02200016U}) {
        addOrientations(
            QByteArray::number(code, 16).constData(),
            [&](QTestData& row, Orientation orientation) { row << code << orientation; });
    }
}

void tst_SensorConverter::keepsToThePixelsOfTheTarget()
{
    QFETCH(quint32, code);
    QFETCH(Orientation, orientation);
    constexpr uchar guard = 0x5a;
    constexpr QSize size(13, 5);
    constexpr int stride = 13 * 4 + 20;
    constexpr int before = 64;
    QByteArray memory(before + stride * size.height() + before, char(guard));
    auto* pixels = reinterpret_cast<uchar*>(memory.data()) + before;
    QImage image(pixels, size.width(), size.height(), stride, QImage::Format_RGB32);
    const std::size_t length = bytesOfPicture(*findSensorFormat(code), size);
    QVERIFY(fill(&image, code, QByteArray(int(length), char(0x81)), orientation));
    for (int i = 0; i < memory.size(); ++i) {
        const int place = i - before;
        const bool isPixel =
            place >= 0 && place < stride * size.height() && place % stride < size.width() * 4;
        if (!isPixel)
            QCOMPARE(uchar(memory[i]), guard);
        else if (place % 4 == 3)
            QCOMPARE(uchar(memory[i]), uchar(255));
    }
}

void tst_SensorConverter::refusesTooFewBytes_data()
{
    QTest::addColumn<quint32>("code");
    for (const quint32 code : {mono8, bayerRG8, rgb8, 0x010a0046U, 0x010c0006U, 0x0110000dU,
                               0x02100032U, 0x020c001eU, 0x02180020U})
        QTest::addRow("0x%08x", code) << code;
}

void tst_SensorConverter::refusesTooFewBytes()
{
    QFETCH(quint32, code);
    constexpr QSize size(9, 7);
    const int needed = int(bytesOfPicture(*findSensorFormat(code), size));
    for (const int length : {0, 1, needed / 2, needed - 1})
        QVERIFY(converted(code, QByteArray(length, 'x'), size).isNull());
    QVERIFY(!converted(code, QByteArray(needed, 'x'), size).isNull());
    QVERIFY(!converted(code, QByteArray(needed + 5, 'x'), size).isNull());
}

void tst_SensorConverter::skipsThePaddingOfRows_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<int>("packing");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("samplesPerRow");
    const auto add = [](std::initializer_list<quint32> codes, Packing packing, int bits,
                        int samplesPerRow = paddedSize.width()) {
        for (const quint32 code : codes)
            QTest::addRow("0x%08x", code) << code << int(packing) << bits << samplesPerRow;
    };
    add({mono8, 0x01080008, bayerRG8, 0x0108000a, 0x0108000b}, Bytes, 8);
    add({0x01100003, 0x0110000c, 0x0110000d, 0x0110000e, 0x0110000f}, Words, 10);
    add({0x01100005, 0x01100010, 0x01100011, 0x01100012, 0x01100013}, Words, 12);
    add({0x01100025}, Words, 14);
    add({0x01100007, 0x0110002e, 0x0110002f, 0x01100030, 0x01100031}, Words, 16);
    add({0x010c0004, 0x010c0026, 0x010c0027, 0x010c0028, 0x010c0029}, Packed, 10);
    add({0x010c0006, 0x010c002a, 0x010c002b, 0x010c002c, 0x010c002d}, Packed, 12);
    add({0x010a0046, 0x010a0052, 0x010a0054, 0x010a0056, 0x010a0058}, Stream, 10);
    add({0x010c0047, 0x010c0053, 0x010c0055, 0x010c0057, 0x010c0059}, Stream, 12);
    constexpr int threeAPixel = 3 * paddedSize.width();
    add({rgb8, 0x02180015, 0x02180020, 0x0218003a, 0x0218003d, 0x02180040, 0x0218005b}, Bytes, 8,
        threeAPixel);
    add({0x02200016, 0x02200017}, Bytes, 8, 4 * paddedSize.width());
    add({0x02300018, 0x02300019}, Words, 10, threeAPixel);
    add({0x0230001a, 0x0230001b}, Words, 12, threeAPixel);
    add({0x02300033, 0x0230004b}, Words, 16, threeAPixel);
    add({0x021e005c, 0x021e0048}, Stream, 10, threeAPixel);
    add({0x0224005d, 0x02240049}, Stream, 12, threeAPixel);
    // 37 pixels are nineteen pairs, or ten groups of four with six samples.
    add({0x0210001f, 0x02100032, 0x0210003b, 0x0210003e, 0x02100041, 0x02100043, 0x02100044,
         0x02100045},
        Bytes, 8, 19 * 4);
    add({0x020c001e, 0x020c003c, 0x020c003f, 0x020c0042}, Bytes, 8, 10 * 6);
}

void tst_SensorConverter::skipsThePaddingOfRows()
{
    QFETCH(quint32, code);
    QFETCH(int, packing);
    QFETCH(int, bits);
    QFETCH(int, samplesPerRow);
    const int rows = paddedSize.height();
    const QVector<int> samples = scatteredSamples(samplesPerRow * rows, bits);
    for (const Orientation& orientation : orientations) {
        const QImage expected =
            converted(code, pack(samples, Packing(packing), bits), paddedSize, orientation);
        QVERIFY(!expected.isNull());
        for (const int padding : {1, 3, 8}) {
            QByteArray data;
            for (int y = 0; y < rows; ++y) {
                const auto row = samples.mid(y * samplesPerRow, samplesPerRow);
                data += pack(row, Packing(packing), bits) + QByteArray(padding, char(0xa5));
            }
            const auto bytes = std::uint32_t(padding);
            QCOMPARE(converted(code, data, paddedSize, orientation, bytes), expected);
            data.chop(padding);
            QCOMPARE(converted(code, data, paddedSize, orientation, bytes), expected);
            data.chop(1);
            QVERIFY(converted(code, data, paddedSize, orientation, bytes).isNull());
        }
    }
}

void tst_SensorConverter::refusesPaddingThatDoesNotFit_data()
{
    QTest::addColumn<quint32>("padding");
    QTest::newRow("a byte too many") << 5U;
    QTest::newRow("as long as a row") << 9U;
    QTest::newRow("the largest of a frame") << 0xffffU;
    QTest::newRow("below zero") << quint32(-1);
    QTest::newRow("overflow of 32 bits") << 0x7fffffffU;
}

void tst_SensorConverter::refusesPaddingThatDoesNotFit()
{
    QFETCH(quint32, padding);
    constexpr QSize size(9, 7);
    for (const quint32 code : {mono8, bayerRG8}) {
        const QByteArray data(size.width() * 7 + 4 * 6, 'x');
        QVERIFY(!converted(code, data, size, {}, 4).isNull());
        QVERIFY(converted(code, data, size, {}, padding).isNull());
    }
    // A single row has nothing behind it that would be looked at.
    QVERIFY(!converted(mono8, QByteArray(9, 'x'), {9, 1}, {}, padding).isNull());
}

void tst_SensorConverter::refusesTargetsThatCannotHoldThePicture()
{
    const QByteArray data(100, 'x');
    QImage none;
    QVERIFY(!fill(&none, mono8, data, {}));
    QImage grey(5, 5, QImage::Format_Grayscale8);
    QVERIFY(!fill(&grey, mono8, data, {}));
}

void tst_SensorConverter::convertsPicturesOfChangingKinds()
{
    SensorConverter converter;
    for (const quint32 code : {bayerRG8, 0x010a0058U, rgb8, mono8, bayerRG8, 0x02100032U}) {
        for (const QSize& size : {QSize(40, 8), QSize(9, 3), QSize(41, 7)}) {
            const SensorFormat& format = *findSensorFormat(code);
            const QByteArray data = bytes(scatteredSamples(int(bytesOfPicture(format, size)), 8));
            QImage image(size, QImage::Format_RGB32);
            const SensorData picture = {reinterpret_cast<const uchar*>(data.constData()),
                                        std::size_t(data.size())};
            QVERIFY(converter.convert(format, picture, {false, true}, &image));
            QCOMPARE(image, converted(code, data, size, {false, true}));
        }
    }
}

QTEST_APPLESS_MAIN(tst_SensorConverter)
#include "tst_SensorConverter.moc"
