#include "GuardedBytes.h"
#include "SensorPictures.h"

#include "pixels/SampleRows.h"

#include <QtTest>

using namespace zolens;
using namespace SensorPictures;

namespace {

QByteArray unpacked(std::uint32_t code, const QByteArray& data, int first, int count)
{
    const GuardedBytes from(data);
    const GuardedBytes to(GuardedBytes::blank(count));
    unpackSamples(*findSensorFormat(code), from.data(), std::size_t(first), std::size_t(count),
                  to.data());
    return QByteArray(reinterpret_cast<const char*>(to.data()), count);
}

} // namespace

class tst_SampleRows final : public QObject
{
    Q_OBJECT

private slots:
    void takesTheUpperBits_data()
    {
        QTest::addColumn<quint32>("code");
        QTest::addColumn<QByteArray>("packed");
        QTest::addColumn<QByteArray>("upper");
        const auto row = [](const char* name, quint32 code, const char* packed, const char* upper) {
            QTest::newRow(name) << code << QByteArray::fromHex(packed)
                                << QByteArray::fromHex(upper);
        };
        row("8 bits", 0x01080001, "0001 7fff", "00017fff");
        // 0x3ff, 0x200, 0x1fd, 0x001
        row("10 bits in words", 0x01100003, "ff03 0002 fd01 0100", "ff807f00");
        // 0xfff, 0x80f, 0x7f0, 0x00f
        row("12 bits in words", 0x01100005, "ff0f 0f08 f007 0f00", "ff807f00");
        // 0x3fff, 0x203f, 0x1fc0, 0x003f
        row("14 bits in words", 0x01100025, "ff3f 3f20 c01f 3f00", "ff807f00");
        row("16 bits in words", 0x01100007, "ffff ff80 007f ff00", "ff807f00");
        // From the last sample on: 0000000001 0111111101 1000000000 1111111111
        row("10 bits in a stream", 0x010a0046, "ff 03 d8 5f 00", "ff807f00");
        // 0xfff, 0x80f, 0x7f0, 0x00f
        row("12 bits in a stream", 0x010c0047, "ff ff 80 f0 f7 00", "ff807f00");
        // The byte in the middle has the lower bits of both, which do not count.
        row("10 bits, the upper ones outside", 0x010c0004, "ff 03 80 7f 31 00", "ff807f00");
        row("12 bits, the upper ones outside", 0x010c0006, "ff ff 80 7f f0 00", "ff807f00");
    }

    void takesTheUpperBits()
    {
        QFETCH(quint32, code);
        QFETCH(QByteArray, packed);
        QFETCH(QByteArray, upper);
        QCOMPARE(unpacked(code, packed, 0, upper.size()).toHex(), upper.toHex());
    }

    void beginsAndEndsAtAnySampleWithinTheData_data()
    {
        QTest::addColumn<quint32>("code");
        QTest::addColumn<int>("packing");
        QTest::addColumn<int>("bits");
        const auto row = [](const char* name, quint32 code, Packing packing, int bits) {
            QTest::newRow(name) << code << int(packing) << bits;
        };
        row("Mono8", 0x01080001, Bytes, 8);
        row("Mono10", 0x01100003, Words, 10);
        row("Mono12", 0x01100005, Words, 12);
        row("Mono14", 0x01100025, Words, 14);
        row("Mono16", 0x01100007, Words, 16);
        row("Mono10p", 0x010a0046, Stream, 10);
        row("Mono12p", 0x010c0047, Stream, 12);
        row("Mono10Packed", 0x010c0004, SensorPictures::Packed, 10);
        row("Mono12Packed", 0x010c0006, SensorPictures::Packed, 12);
    }

    void beginsAndEndsAtAnySampleWithinTheData()
    {
        QFETCH(quint32, code);
        QFETCH(int, packing);
        QFETCH(int, bits);
        for (int first = 0; first <= 9; ++first) {
            for (const int count : {1, 2, 3, 4, 5, 6, 7, 8, 9, 31, 33, 70}) {
                const QVector<int> samples = scatteredSamples(first + count, bits);
                QByteArray upper;
                for (int i = first; i < samples.size(); ++i)
                    upper.append(char(samples[i] >> (bits - 8)));
                const QByteArray data = pack(samples, SensorPictures::Packing(packing), bits);
                QCOMPARE(unpacked(code, data, first, count), upper);
            }
        }
    }
};

QTEST_APPLESS_MAIN(tst_SampleRows)
#include "tst_SampleRows.moc"
