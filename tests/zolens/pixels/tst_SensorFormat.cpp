#include "pixels/SensorFormat.h"

#include <QtTest>

using namespace zolens;

namespace {

constexpr std::uint32_t mono8 = 0x01080001;
constexpr std::uint32_t mono10p = 0x010a0046;
constexpr std::uint32_t mono12Packed = 0x010c0006;
constexpr std::uint32_t rgb10p = 0x021e005c;
constexpr std::uint32_t yuv422 = 0x02100032;
constexpr std::uint32_t yuv411 = 0x020c001e;

std::size_t bytes(std::uint32_t code, int width, int height)
{
    return bytesOfPicture(*findSensorFormat(code), {width, height});
}

} // namespace

class tst_SensorFormat : public QObject
{
    Q_OBJECT

private slots:
    void knowsAFormatByItsCode_data();
    void knowsAFormatByItsCode();
    void doesNotKnowOthers();
    void roundsUpToBytes();
    void fillsUpGroupsAtTheEndsOfRows();
    void padsBetweenWholeBytes();
    void hasNoPictureWithoutPixels();
};

void tst_SensorFormat::knowsAFormatByItsCode_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<int>("number");
    const auto add = [](int number, std::initializer_list<quint32> codes) {
        for (const quint32 code : codes)
            QTest::addRow("0x%08x", code) << code << number;
    };
    // Mono 8, 10, 10Packed, 12, 12Packed, 16, 14, 10p, 12p.
    add(7, {0x01080001, 0x01100003, 0x010c0004, 0x01100005, 0x010c0006, 0x01100007, 0x01100025,
            0x010a0046, 0x010c0047});
    // Bayer GR RG GB BG: 8, 10, 12, 16, 10Packed, 12Packed.
    for (const quint32 first :
         {0x01080008U, 0x0110000cU, 0x01100010U, 0x0110002eU, 0x010c0026U, 0x010c002aU})
        add(1, {first, first + 1, first + 2, first + 3});
    // Bayer BG GB GR RG: 10p, 12p.
    for (const quint32 first : {0x010a0052U, 0x010c0053U})
        add(1, {first, first + 2, first + 4, first + 6});
    // RGB and BGR of 8, then with alpha, then 10, 12, 16, 10p, 12p.
    add(0, {0x02180014, 0x02180015});
    add(1, {0x02200016, 0x02200017, 0x02300018, 0x02300019, 0x0230001a, 0x0230001b, 0x02300033,
            0x0230004b, 0x021e005c, 0x021e0048, 0x0224005d, 0x02240049});
    // YUV 4:1:1, 4:2:2, 4:4:4, then those with Cb and Cr.
    add(5, {0x020c001e, 0x0210001f, 0x02180020, 0x02100032, 0x0218003a, 0x0210003b, 0x020c003c,
            0x0218003d, 0x0210003e, 0x020c003f, 0x02180040, 0x02100041, 0x020c0042, 0x02100043,
            0x02100044, 0x02100045, 0x0218005b});
}

void tst_SensorFormat::knowsAFormatByItsCode()
{
    QFETCH(quint32, code);
    QFETCH(int, number);
    const SensorFormat* format = findSensorFormat(code);
    QVERIFY(format);
    QCOMPARE(format->code, code);
    QCOMPARE(format->number, number);
    // The code itself tells the bits that a pixel takes.
    const std::size_t bitsPerPixel = code >> 16 & 0xff;
    QCOMPARE(bytesOfPicture(*format, {1024, 6}), 1024 * 6 * bitsPerPixel / 8);
}

void tst_SensorFormat::doesNotKnowOthers()
{
    // None, signed samples, separate planes, depth, a maker's own.
    for (const quint32 code : {0U, 0x01080002U, 0x02180021U, 0x026000c0U, 0x810c0001U})
        QVERIFY(!findSensorFormat(code));
}

void tst_SensorFormat::roundsUpToBytes()
{
    QCOMPARE(bytes(mono8, 7, 3), std::size_t(21));
    QCOMPARE(bytes(mono10p, 3, 1), std::size_t(4));
    QCOMPARE(bytes(mono10p, 3, 3), std::size_t(12));
    QCOMPARE(bytes(mono12Packed, 1, 1), std::size_t(2));
    QCOMPARE(bytes(mono12Packed, 3, 3), std::size_t(14));
    QCOMPARE(bytes(rgb10p, 1, 1), std::size_t(4));
    QCOMPARE(bytes(rgb10p, 5, 3), std::size_t(57));
}

void tst_SensorFormat::fillsUpGroupsAtTheEndsOfRows()
{
    QCOMPARE(bytes(yuv422, 3, 2), std::size_t(16));
    QCOMPARE(bytes(yuv411, 4, 3), std::size_t(18));
    QCOMPARE(bytes(yuv411, 5, 3), std::size_t(36));
}

void tst_SensorFormat::padsBetweenWholeBytes()
{
    const auto padded = [](std::uint32_t code, QSize size, std::uint32_t padding) {
        return bytesOfPicture(*findSensorFormat(code), size, padding);
    };
    QCOMPARE(padded(mono8, {7, 3}, 1), std::size_t(23));
    QCOMPARE(padded(mono8, {7, 1}, 100), std::size_t(7));
    QCOMPARE(padded(mono10p, {3, 3}, 2), std::size_t(16));
    QCOMPARE(padded(mono12Packed, {3, 3}, 1), std::size_t(17));
    QCOMPARE(padded(yuv411, {5, 3}, 4), std::size_t(44));
    QCOMPARE(padded(mono8, {1, 1 << 20}, 0xffffffff), (1ULL << 20) + 0xffffffffULL * 0xfffff);
}

void tst_SensorFormat::hasNoPictureWithoutPixels()
{
    QCOMPARE(bytes(mono8, 0, 5), std::size_t(0));
    QCOMPARE(bytes(mono8, 5, -1), std::size_t(0));
    constexpr int largest = std::numeric_limits<int>::max();
    QCOMPARE(bytes(mono8, largest, largest), std::size_t(0));
    QCOMPARE(bytes(mono8, 70000, 70000), std::size_t(4900000000));
}

QTEST_APPLESS_MAIN(tst_SensorFormat)
#include "tst_SensorFormat.moc"
