#pragma once

#include "YuvColors.h"

#include "pixels/SensorConverter.h"

#include <QImage>
#include <QTest>
#include <QVector>

#include <functional>
#include <memory>

/// Pictures of machine vision cameras, packed by the definitions of the standard, bit by bit, and
/// what becomes of them.
namespace SensorPictures {

inline QByteArray bytes(const QVector<int>& samples)
{
    QByteArray data;
    for (const int sample : samples)
        data.append(char(sample));
    return data;
}

inline QByteArray words(const QVector<int>& samples)
{
    QByteArray data;
    for (const int sample : samples)
        data.append(char(sample & 0xff)).append(char(sample >> 8));
    return data;
}

/// Without gaps, the lowest bit first.
inline QByteArray stream(const QVector<int>& samples, int bits)
{
    QByteArray data((samples.size() * bits + 7) / 8, '\0');
    for (int i = 0; i < samples.size() * bits; ++i) {
        if (samples[i / bits] >> (i % bits) & 1)
            data[i / 8] = char(data[i / 8] | 1 << (i % 8));
    }
    return data;
}

/// Two samples in three bytes: upper bits, both samples' lower bits, upper bits.
inline QByteArray packed(const QVector<int>& samples, int bits)
{
    const int lowBits = bits - 8;
    const int mask = (1 << lowBits) - 1;
    QByteArray data;
    for (int i = 0; i < samples.size(); ++i) {
        const char high = char(samples[i] >> lowBits);
        const int low = samples[i] & mask;
        if (i % 2 == 0) {
            data.append(high).append(char(low));
        } else {
            data[data.size() - 1] = char(data[data.size() - 1] | low << 4);
            data.append(high);
        }
    }
    return data;
}

enum Packing { Bytes, Words, Stream, Packed };

inline QByteArray pack(const QVector<int>& samples, Packing packing, int bits)
{
    switch (packing) {
    case Words:
        return words(samples);
    case Stream:
        return stream(samples, bits);
    case Packed:
        return packed(samples, bits);
    default:
        return bytes(samples);
    }
}

using Orientation = zolens::FrameConverter::Orientation;

constexpr Orientation orientations[] = {{false, false}, {true, false}, {false, true}, {true, true}};

/// Fills the picture from a copy of just the size of the data, so that every byte read beyond it is
/// noticed where memory is watched.
inline bool fill(QImage* image, std::uint32_t code, const QByteArray& data, Orientation orientation,
                 std::uint32_t padding = 0)
{
    const auto copy = std::make_unique<uchar[]>(std::size_t(data.size()));
    std::copy(data.begin(), data.end(), copy.get());
    zolens::SensorConverter converter;
    return converter.convert(*zolens::findSensorFormat(code),
                             {copy.get(), std::size_t(data.size()), padding}, orientation, image);
}

inline QImage converted(std::uint32_t code, const QByteArray& data, QSize size,
                        Orientation orientation = {}, std::uint32_t padding = 0)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::transparent);
    return fill(&image, code, data, orientation, padding) ? image : QImage();
}

/// Numbers without any order that are the same in every run.
inline int scattered(int number, int bits)
{
    const quint32 mixed = (quint32(number) + 1) * 2654435761U;
    return int((mixed ^ mixed >> 15) * 2246822519U >> (32 - bits));
}

inline QVector<int> scatteredSamples(int count, int bits)
{
    QVector<int> samples(count);
    for (int i = 0; i < count; ++i)
        samples[i] = scattered(i, bits);
    return samples;
}

/// Where the pictures differ by more than `tolerance` in a channel; empty when nowhere.
inline QString difference(const QImage& actual, const QImage& expected, int tolerance)
{
    if (actual.size() != expected.size())
        return QStringLiteral("no picture");
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            if (!isNear(actual.pixel(x, y), expected.pixel(x, y), tolerance))
                return QStringLiteral("%1 instead of %2 at %3, %4")
                    .arg(actual.pixel(x, y), 0, 16)
                    .arg(expected.pixel(x, y), 0, 16)
                    .arg(x)
                    .arg(y);
        }
    }
    return {};
}

inline void addOrientations(const char* name,
                            const std::function<void(QTestData&, Orientation)>& fillRow)
{
    for (const Orientation& turn : orientations)
        fillRow(QTest::addRow("%s%s%s", name, turn.flip ? " flipped" : "",
                              turn.mirror ? " mirrored" : ""),
                turn);
}

} // namespace SensorPictures

Q_DECLARE_METATYPE(SensorPictures::Orientation)
